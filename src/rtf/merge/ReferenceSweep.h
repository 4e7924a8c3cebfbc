#pragma once

#include <cstdint>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/ListTables.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/StyleSheet.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The new numbers of a document's references. A null member leaves its references unchanged.
struct References {
    const NumberMap* fonts = nullptr;
    const NumberMap* colours = nullptr;
    StyleSheet* styles = nullptr;
    ListTables* lists = nullptr;
    std::int32_t defaultStyle = NumberMap::none;  // named in paragraphs without a style
    bool formats = false;                         // whether styles may bring formatting with them (DirectLook)
    // Tolerant merging only, for lifted documents: the font and the size that \plain means, and \widctlpar or
    // \nowidctlpar where \pard would go back to the other one in the host.
    std::int32_t defaultFont = NumberMap::none;
    std::int32_t defaultSize = NumberMap::none;
    std::u16string_view widowControl{};
};

// Renumbers a document's references in one pass.
//
// In exact merging the result for fonts and colours is that of replacing, for one number after the other, the
// word with its number and one of "\", " ", "}", "{" and carriage return after it. Such a replacement continues
// after the delimiter, so of adjacent equal references, \f1\f1\b, it takes every other one. Replaced references
// have a word in capitals until all numbers of the kind are replaced; all such words are turned back at the
// end, also those of the document itself. Tolerant merging takes every whole word; for styles and lists exact
// merging does too.
class ReferenceSweep {
public:
    ReferenceSweep(const CleanOptions& options, NumberTexts& numbers) noexcept
        : tolerant_(options.tolerant), numbers_(numbers) {}

    // A new text; `edits` receives what changes.
    void begin(std::u16string_view text, const References& references, TextEdits& edits);

    // Renumbers the words that begin in [begin, end), which is outside of an escape. Ranges ascend.
    void sweep(std::size_t begin, std::size_t end);

private:
    std::size_t take(std::size_t at);
    std::size_t takeCapitals(std::size_t at);
    void takeNumber(const ControlWord& found, WordMeaning meaning, std::u16string_view letters);
    void replacePlainly(const ControlWord& found, std::u16string_view letters, const NumberMap* numbers);
    void replaceNumber(const ControlWord& found, std::int32_t number);
    void nameDefaults(const ControlWord& found);
    const DirectLook* lookOf(StyleKind kind, std::u16string_view number) const;
    std::size_t takeFormatted(const ControlWord& found, const DirectLook& look);
    void insertWords(std::size_t at, std::u16string_view words);
    std::u16string newNumber(const ControlWord& found) const;
    std::u16string defaultWord(const ControlWord& found, std::u16string_view letters, std::int32_t number);
    bool namesItself(std::size_t at, std::u16string_view letters) const;

    bool tolerant_;
    NumberTexts& numbers_;
    std::u16string_view text_;
    References references_;
    TextEdits* edits_ = nullptr;
    std::size_t end_ = 0;  // of the range that is swept

    // The last exact replacement: its word, its old number, and its delimiter.
    std::u16string_view lastLetters_;
    std::u16string_view lastNumber_;
    std::size_t usedDelimiter_ = 0;
};

}  // namespace velmor
