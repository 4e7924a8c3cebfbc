#include "rtf/merge/TableEntries.h"

#include <algorithm>

#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {

std::optional<TextRange> findTableGroup(std::u16string_view text, std::u16string_view opening, bool tolerant) {
    const std::size_t begin = RtfSearch(text, tolerant).find(opening, 0, Comparison::text);
    const std::size_t end = begin == text.npos ? noGroupEnd : findGroupEnd(text, begin + 1, tolerant);
    return end == noGroupEnd ? std::nullopt : std::optional(TextRange{begin, end + 1});
}

bool TableEntries::next() noexcept {
    at_ = skipWhiteSpace(table_, at_);
    if (at_ >= table_.size()) return false;
    isGroup_ = table_[at_] == u'{';
    return isGroup_ ? nextGroup() : nextRun();
}

bool TableEntries::nextGroup() noexcept {
    const std::size_t end = findGroupEnd(table_, at_ + 1, tolerant_);
    if (end == noGroupEnd) return false;
    range_ = {at_, end + 1};
    at_ = end + 1;
    return true;
}

bool TableEntries::nextRun() noexcept {
    range_.begin = at_;
    while (at_ < table_.size() && table_[at_] != u';') {
        if (table_[at_] == u'\\') {
            at_ += 2;
        } else if (table_[at_] == u'{') {
            const std::size_t end = findGroupEnd(table_, at_ + 1, tolerant_);
            if (end == noGroupEnd) return false;
            at_ = end + 1;
        } else {
            ++at_;
        }
    }
    range_.end = std::min(at_, table_.size());
    ++at_;
    return true;
}

EntryItems::EntryItems(std::u16string_view entry, bool tolerant) noexcept : entry_(entry), tolerant_(tolerant) {
    if (entry_.substr(0, 1) != u"{") return;
    entry_.remove_suffix(1);
    at_ = 1;
}

bool EntryItems::next() noexcept {
    begin_ = at_;
    if (at_ >= entry_.size()) return false;
    kind_ = Kind::text;
    if (entry_[at_] == u'{') {
        kind_ = Kind::group;
        const std::size_t end = findGroupEnd(entry_, at_ + 1, tolerant_);
        at_ = end == noGroupEnd ? entry_.size() : end + 1;
    } else if (entry_[at_] == u'\\') {
        readEscape();
    } else {
        ++at_;
    }
    return true;
}

void EntryItems::readEscape() noexcept {
    word_ = readWord(entry_, at_);
    if (!word_.letters.empty()) {
        kind_ = Kind::word;
        at_ = endWithBlank(entry_, word_);
    } else {
        const bool isByte = standsAt(entry_, at_, u"\\'");
        at_ = std::min(entry_.size(), at_ + (isByte ? 4u : 2u));
    }
}

}  // namespace velmor
