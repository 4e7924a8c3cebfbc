#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor::cli {

// Inserts the version 1, which cleaning looks for, into a document without a version: "{\rtf\ansi"
// means "{\rtf1\ansi". Throws Failure (exitFile) when the text contains no RTF document;
// `name` is for messages.
void requireDocument(std::u16string& text, bool addVersion, const std::string& name);

// Joins documents for cleaning in merge mode: each further document is inserted before the closing
// brace of the first, preceded by the marker group of a merge page break. Linear in the texts.
//
// The texts have passed requireDocument. Throws Failure (exitFile) for a document without a closing
// brace, and for a joined text that exceeds the length of a text.
class DocumentJoiner {
public:
    DocumentJoiner(std::u16string first, const std::string& name);

    // Returns how many characters around the document were left out, white space and NULs aside. (The
    // first document keeps the characters around it.)
    std::size_t add(std::u16string_view text, const std::string& name);

    std::u16string joined() &&;

private:
    std::u16string text_;  // without the first document's closing brace and
    std::u16string tail_;  // what follows it
};

}  // namespace velmor::cli
