#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The colours of all documents of a run, by definition ("\red255\green0\blue0;"), in order of first appearance,
// numbered from 1: number 0 is the automatic colour. A document's table is read up to the first line break or
// blank after a ";"; tolerant merging reads it to its end, and takes the names of theme colours from the definitions
// of documents other than the host: the theme that stays is the host's.
class ColourTable {
public:
    static constexpr std::u16string_view opening = u"{\\colortbl";

    explicit ColourTable(const CleanOptions& options) noexcept : tolerant_(options.tolerant), report_(options.report) {}

    // Adds the colours of a document's table; `numbers` receives the new number of each.
    void add(std::u16string_view table, NumberMap& numbers, bool host) {
        std::size_t at = skipWhiteSpace(table, opening.size());
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

    // The merged table; one of five colours when none was added.
    std::u16string text() const {
        constexpr std::u16string_view defaults =
            u"\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;\\red0\\green255\\blue0;"
            u"\\red0\\green0\\blue255;";
        std::u16string result(opening);
        result.append(u";").append(definitions_.empty() ? defaults : std::u16string_view(definitions_)).append(u"}");
        return result;
    }

private:
    // What remains is the colour that readers without themes show. A definition that says nothing else stays.
    static std::u16string withoutThemeWords(std::u16string definition) {
        std::u16string result;
        WordRun words(definition, 0);
        while (words.next()) {
            const ControlWord& word = words.word();
            if (!wordIs(WordTrait::themeColour, word.letters))
                result.append(definition, word.begin, word.end - word.begin);
        }
        return result.empty() ? definition : result.append(definition, words.end());
    }

    std::int32_t numberOf(std::u16string_view definition, bool host) {
        const auto next = static_cast<std::int32_t>(numbers_.size()) + 1;
        std::u16string text(definition);
        if (tolerant_) std::erase_if(text, isWhiteSpace);
        if (tolerant_ && !host) text = withoutThemeWords(std::move(text));
        const auto [known, isNew] = numbers_.emplace(std::move(text), next);
        if (isNew) definitions_ += known->first;
        return known->second;
    }

    bool tolerant_;
    MergeReport* report_;
    NameIndex numbers_;
    std::u16string definitions_;
};

}  // namespace velmor
