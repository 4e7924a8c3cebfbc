#include "rtf/merge/DefaultTabs.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/PageSetup.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr std::int32_t readersDistance = 720;
constexpr std::int32_t smallestDistance = 100;  // less would be very many stops

std::optional<std::int32_t> firstNumberOf(std::u16string_view text, std::u16string_view word) {
    RtfSearch search(text);
    for (std::size_t at = 0; (at = search.findWord(word, at)) != text.npos; ++at) {
        const std::u16string_view number = readWord(text, at).number;
        if (!number.empty()) return numberOf(number);
    }
    return std::nullopt;
}

// Finds the paragraphs with tabs, and where their stops go.
class TabbedParagraphs {
public:
    explicit TabbedParagraphs(std::u16string_view text) {
        for (RtfReader reader(text, 0, text.size(), true); reader.next();) {
            if (reader.opens()) {
                groups_.push_back(groups_.back());
            } else if (!reader.closes()) {
                takeWord(reader.word());
            } else if (groups_.size() > 1) {
                groups_.pop_back();
            }
        }
    }

    // A paragraph that has only the indent of its list stays as it is: a stop could precede that indent.
    TextEdits stops(std::int32_t distance, std::int32_t width) const {
        TextEdits edits;
        for (const Formatting& formatting : formattings_) {
            if (!formatting.hasTab || (formatting.isList && !formatting.isIndented)) continue;
            std::u16string words;
            for (std::int32_t stop = (formatting.reach / distance + 1) * distance; stop <= width; stop += distance) {
                words += u"\\tx" + decimal(stop);
            }
            if (!words.empty()) edits.replaceVal(formatting.place, formatting.place, std::move(words));
        }
        return edits;
    }

private:
    // What a \pard begins: paragraphs of one formatting.
    struct Formatting {
        std::size_t place;       // after the word that the stops may follow
        std::size_t depth;       // of its group
        std::int32_t reach = 0;  // of the last stop, or of the indent
        bool isIndented = false;
        bool isList = false;
        bool hasTab = false;
    };

    void takeWord(const ControlWord& word) {
        if (word.letters == u"pard") {
            formattings_.push_back({word.end, groups_.size()});
            groups_.back() = formattings_.size();
            return;
        }
        if (groups_.back() == 0) return;
        Formatting& formatting = formattings_[groups_.back() - 1];
        if (word.letters == u"tab") {
            formatting.hasTab = true;
        } else if (word.letters == u"ls") {
            formatting.isList = word.number != u"0";
            formatting.hasTab |= formatting.isList;
        } else if (word.letters == u"tx" || word.letters == u"li" || word.letters == u"lin") {
            formatting.isIndented |= word.letters != u"tx";
            formatting.reach = std::max(formatting.reach, numberOf(word.number));
            const bool isLast = groups_.back() == formattings_.size();
            if (isLast && formatting.depth == groups_.size()) formatting.place = word.end;
        }
    }

    std::vector<Formatting> formattings_;
    std::vector<std::size_t> groups_{0};  // how many formattings precede: the last one is that of the group
};

}  // namespace

std::int32_t defaultTabOf(std::u16string_view text) {
    return firstNumberOf(text, u"\\deftab").value_or(readersDistance);
}

std::int32_t textWidthOf(std::u16string_view text) {
    const auto number = [&](PageSetup::Value value) {
        const std::u16string word = u"\\" + std::u16string(PageSetup::documentWords[value]);
        return std::int64_t{firstNumberOf(text, word).value_or(PageSetup::defaults[value])};
    };
    const std::int64_t width = number(PageSetup::width) - number(PageSetup::left) - number(PageSetup::right);
    constexpr std::int64_t widest = 31680;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(width, 0, widest));
}

void keepDefaultTabs(std::u16string& text, std::int32_t distance, std::int32_t width) {
    if (distance < smallestDistance) return;
    TabbedParagraphs(text).stops(distance, width).apply(text);
}

}  // namespace velmor
