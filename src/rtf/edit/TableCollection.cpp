#include "rtf/edit/TableCollection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

// Removes the placeholder at the begin of `text`, and returns its number.
std::size_t takePlaceholder(std::u16string_view& text, char16_t mark) {
    std::size_t number = 0;
    std::size_t at = 1;
    for (; at < text.size() && text[at] != mark; ++at) number = number * 10 + (text[at] - u'0');
    text.remove_prefix(std::min(at + 1, text.size()));
    return number;
}

}  // namespace

std::optional<char16_t> TableCollection::unusedMark(std::u16string_view text) {
    constexpr char16_t first = 0xFDD0;
    char16_t highest = 0;
    for (const char16_t unit : text) highest = std::max(highest, unit);
    if (highest < first) return first;

    // From the noncharacters through the private use area; no surrogates and no syntax of RTF.
    std::vector<bool> used(0x10000);
    for (const char16_t unit : text) used[unit] = true;
    for (unsigned mark = 0xFDEF; mark >= 0xE000; --mark) {
        if (!used[mark]) return static_cast<char16_t>(mark);
    }
    return std::nullopt;
}

std::u16string TableCollection::placeholderOf(std::size_t number) const {
    return mark_ + decimal(number) + mark_;
}

TableCollection::Placeholder TableCollection::placeholderAt(std::u16string_view text,
                                                            std::size_t index) const noexcept {
    std::u16string_view rest = text.substr(index);
    const std::size_t number = takePlaceholder(rest, mark_);
    const std::size_t end = text.size() - rest.size();
    if (number < tableCount || number - tableCount >= documents_.size()) return {end, std::nullopt};
    return {end, number - tableCount};
}

const std::u16string* TableCollection::entry(std::size_t number) const noexcept {
    if (number < tableCount) return &tables_[number];
    number -= tableCount;
    return number < documents_.size() ? &documents_[number].text : nullptr;
}

// The parts of a text and of the entries at its placeholders, in the order of the result.
class TableCollection::Parts {
public:
    Parts(const TableCollection& tables, std::u16string_view text)
        : tables_(tables), open_(tableCount + tables.documents_.size()), readings_{{text, open_.size()}} {}

    // Moves to the next part; false when none is left.
    bool next() {
        followsEmpty_ = false;
        while (!readings_.empty()) {
            std::u16string_view& rest = readings_.back().rest;
            part_ = rest.substr(0, findText(rest, {&tables_.mark_, 1}, 0, Comparison::binary));
            rest.remove_prefix(part_.size());
            if (!part_.empty()) return true;
            rest.empty() ? leave() : enter(takePlaceholder(rest, tables_.mark_));
        }
        return false;
    }

    std::u16string_view part() const noexcept { return part_; }
    bool isOfEntry() const noexcept { return readings_.size() > 1; }
    // Whether the placeholder of an empty entry precedes the part.
    bool followsEmpty() const noexcept { return followsEmpty_; }

private:
    struct Reading {
        std::u16string_view rest;
        std::size_t number;
    };

    void enter(std::size_t number) {
        const std::u16string* const text = tables_.entry(number);
        if (text == nullptr || open_[number]) return;
        followsEmpty_ |= text->empty();
        open_[number] = true;
        readings_.push_back({*text, number});
    }

    void leave() {
        if (isOfEntry()) open_[readings_.back().number] = false;
        readings_.pop_back();
    }

    const TableCollection& tables_;
    std::vector<bool> open_;
    std::vector<Reading> readings_;
    std::u16string_view part_;
    bool followsEmpty_ = false;
};

void TableCollection::expand(std::u16string& psText) {
    std::size_t added = 0;
    for (Parts parts(*this, psText); parts.next();) {
        if (parts.isOfEntry()) added += parts.part().size();
        if (added > privStrCat::maximumLength - psText.size()) throw std::length_error("TableCollection");
    }
    Rewriting result(psText, added);
    for (Parts parts(*this, result.source()); parts.next();) {
        if (parts.followsEmpty() && wordTakesIn(result.written(), parts.part()[0])) result.put(u" ");
        result.put(parts.part());
    }
    result.finish();
    documents_.clear();
    tables_ = {};
}

}  // namespace velmor
