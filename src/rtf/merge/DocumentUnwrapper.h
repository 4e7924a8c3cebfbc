#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"

namespace velmor {

// Tolerant unwrapping: removals and changes in the embedded documents of a host.
class DocumentUnwrapper {
public:
    // `host` is the begin of the host.
    DocumentUnwrapper(std::u16string_view text, std::size_t host);

    TextEdits edits() &&;

private:
    struct Document {
        std::size_t depth = 0;  // of the groups outside
        const CodePage* page = nullptr;
        std::size_t begin = 0;
        std::size_t edits = 0;      // before its own
        TextRange opening;          // its word, if it is removed
        std::u16string counted;     // the text that replaces the word
        std::uint32_t story = 0;    // of the paragraph around it
        std::size_t paragraph = 0;  // the begin of that paragraph
        Level level = 0;            // and its level
        bool begun = false;         // its first paragraph or row has begun
        bool endsParagraph = false;
    };

    // The state that RTF restores after a group. The paragraph, and the row around it, go on after a group of the same
    // story.
    struct Group {
        std::int32_t font = -1;
        std::int32_t fallback = 1;  // fallback units of one \u
        std::uint32_t story = 0;    // texts with paragraphs of their own: the body, a footnote, ...
        std::size_t paragraph = 0;  // the begin of the current one
        TableLevel level;           // and its level
    };

    std::size_t takeBackslash(std::size_t index);
    void takeHex(std::size_t index);
    void takeWord(const ControlWord& word);
    void takeHeaderWord(const ControlWord& word);
    void takeParagraphWord(const ControlWord& word, WordMeaning meaning);
    void beginDocuments(const ControlWord& word, bool row);
    void keepInTable(const ControlWord& word);
    std::size_t openGroup(std::size_t index);
    void openDocument(std::size_t index);
    void closeGroup();
    void closeDocument();
    void readFontCharsets();
    bool fontHasOwnCharset(std::int32_t font);

    std::u16string_view text_;
    std::size_t host_;
    const CodePage* hostPage_;
    std::int32_t hostFont_ = 0;  // its default
    TextEdits edits_;
    std::vector<Document> documents_;  // the open ones
    std::vector<Group> groups_{Group{}};
    std::uint32_t storyCount_ = 0;
    std::int32_t skipped_ = 0;  // remaining fallback units of a \u
    bool charsetsRead_ = false;
    std::vector<std::int32_t> fontsWithCharset_;  // ascending
};

}  // namespace velmor
