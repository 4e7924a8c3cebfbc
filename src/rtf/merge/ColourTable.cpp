#include "rtf/merge/ColourTable.h"

#include "rtf/merge/MergeReport.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr std::u16string_view colourTableOpening = u"{\\colortbl";

std::u16string withoutWhiteSpace(std::u16string_view text) {
    std::u16string result;
    for (const char16_t unit : text) {
        if (!isWhiteSpace(unit)) result += unit;
    }
    return result;
}

// What remains is the colour that readers without themes show. A definition that says nothing else stays.
std::u16string withoutThemeWords(std::u16string definition) {
    std::u16string result;
    WordRun words(definition, 0);
    while (words.next()) {
        const ControlWord& word = words.word();
        if (!wordIs(WordTrait::themeColour, word.letters)) result.append(definition, word.begin, word.end - word.begin);
    }
    return result.empty() ? definition : result.append(definition, words.end());
}

}  // namespace

// A colour contains no brace, so the first brace also ends a damaged table.
std::optional<TextRange> ColourTable::find(std::u16string_view text, bool tolerant) noexcept {
    const std::size_t begin = RtfSearch(text, tolerant).find(colourTableOpening, 0);
    const std::size_t end = begin == nowhere ? nowhere : text.find(u'}', begin);
    return end == nowhere ? std::nullopt : std::optional(TextRange{begin, end + 1});
}

std::int32_t ColourTable::numberOf(std::u16string_view definition, bool host) {
    const auto next = static_cast<std::int32_t>(numbers_.size()) + 1;
    std::u16string text = tolerant_ ? withoutWhiteSpace(definition) : std::u16string(definition);
    if (tolerant_ && !host) text = withoutThemeWords(std::move(text));
    const auto [known, isNew] = numbers_.emplace(std::move(text), next);
    if (isNew) definitions_ += known->first;
    return known->second;
}

void ColourTable::add(std::u16string_view table, NumberMap& numbers, bool host) {
    std::size_t at = skipWhiteSpace(table, colourTableOpening.size());
    const bool hasAutomatic = standsAt(table, at, u";");
    std::int32_t index = hasAutomatic ? 1 : 0;
    if (hasAutomatic) at = skipWhiteSpace(table, at + 1);
    for (;; ++index) {
        const std::size_t end = table.find(u';', at);
        // A group in the table is damage; its braces must not be copied to the merged table.
        if (end == nowhere || table.substr(at, end - at).find_first_of(u"{}") != nowhere) return;
        const std::u16string_view definition = table.substr(at, end + 1 - at);
        const std::size_t known = numbers_.size();
        const std::int32_t number = numberOf(definition, host);
        numbers.set(decimal(index), number);
        if (report_ != nullptr) {
            report_->add(&MergeReport::Document::colours, definition, decimal(index), decimal(number),
                         numbers_.size() > known);
        }
        at = end + 1;
        if (!tolerant_ && table[at] != u'\\') return;
    }
}

std::u16string ColourTable::text() const {
    constexpr std::u16string_view defaults =
        u"\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;\\red0\\green255\\blue0;"
        u"\\red0\\green0\\blue255;";
    std::u16string result(colourTableOpening);
    result.append(u";").append(definitions_.empty() ? defaults : std::u16string_view(definitions_)).append(u"}");
    return result;
}

}  // namespace velmor
