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

// What a document's references come to mean. What is null is left as it is.
struct References {
    const NumberMap* fonts = nullptr;
    const NumberMap* colours = nullptr;
    StyleSheet* styles = nullptr;
    ListTables* lists = nullptr;
    std::int32_t defaultStyle = NumberMap::none;  // named where a paragraph names none
    // Tolerant merging only, for lifted documents: the font that \plain and the beginning mean, and \widctlpar or
    // \nowidctlpar where \pard would go back to the other one in the host.
    std::int32_t defaultFont = NumberMap::none;
    std::u16string_view widowControl{};
};

// Renumbers a document's references in one pass, whatever the number of fonts, colours, styles and
// lists.
//
// The outcome for fonts and colours is that of replacing, for one number after the other, the word
// with its number and one of "\", " ", "}", "{" and carriage return behind it. Such a replacement
// goes on behind the delimiter, so of adjacent equal references, \f1\f1\b, it takes every other one.
// Before the numbers of a kind of reference are final they stand behind a word in capitals; all such
// words are turned back at the end, those that the document brought along, too. Tolerant merging, as
// styles and lists always do, takes every whole word.
class ReferenceSweep {
public:
    ReferenceSweep(const CleanOptions& options, NumberTexts& numbers) noexcept
        : tolerant_(options.tolerant), numbers_(numbers) {}

    // A new text; `edits` receives what changes.
    void begin(std::u16string_view text, const References& references, TextEdits& edits);

    // The words that begin in [begin, end), which stands outside of an escape. Ranges ascend.
    void sweep(std::size_t begin, std::size_t end);

private:
    std::size_t take(std::size_t at);
    std::size_t takeCapitals(std::size_t at);
    void takeNumber(const ControlWord& found, WordMeaning meaning, std::u16string_view letters);
    void replacePlainly(const ControlWord& found, std::u16string_view letters, const NumberMap* numbers);
    void replaceNumber(const ControlWord& found, std::int32_t number);
    void nameDefault(const ControlWord& found, std::u16string_view letters, std::int32_t number,
                     std::u16string_view more = {});
    bool namesItself(std::size_t at, std::u16string_view letters) const;

    bool tolerant_;
    NumberTexts& numbers_;
    std::u16string_view text_;
    References references_;
    TextEdits* edits_ = nullptr;

    // The last plain replacement: its word, its old number, and the delimiter that it used up.
    std::u16string_view lastLetters_;
    std::u16string_view lastNumber_;
    std::size_t usedDelimiter_ = 0;
};

}  // namespace velmor
