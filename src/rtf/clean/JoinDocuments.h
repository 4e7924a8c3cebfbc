#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Inserts the version 1, which cleaning looks for, into a document without a version: "{\rtf\ansi"
// means "{\rtf1\ansi". Throws Error 5 when the text contains no RTF document;
// `name` is for messages.
void requireDocument(std::u16string& text, bool addVersion, const std::string& name);

// The document of a text that has passed requireDocument, with its braces. Throws Error 5 without a closing brace.
TextRange documentIn(std::u16string_view text, const std::string& name);

// How many characters precede or follow the document, white space and NULs aside.
std::size_t countOutside(std::u16string_view text, TextRange document);

// Joins documents for cleaning in merge mode: each further document is inserted before the closing
// brace of the first, preceded by the marker group of a merge page break. Linear in the texts. Calls
// `lost` with how many characters around a further document were left out, white space and NULs aside.
// (The first document keeps the characters around it.)
//
// The texts have passed requireDocument; `names` are for messages. Throws Error 5 for a document
// without a closing brace, and 7 for a joined text that exceeds the length of a text.
std::u16string joinDocuments(std::vector<std::u16string> texts, const std::vector<std::string>& names,
                             const std::function<void(const std::string& name, std::size_t count)>& lost);

}  // namespace velmor
