#include "rtf/tables/ApartGroups.h"

#include <algorithm>

#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

bool isBefore(const TextRange& group, std::size_t word) noexcept {
    return group.begin < word;
}

}  // namespace

std::size_t ApartGroups::closingBrace(std::size_t word) {
    if (!isFound_) find();
    const auto found = std::lower_bound(groups_.begin(), groups_.end(), word, isBefore);
    return found == groups_.end() || found->begin != word ? 0 : found->end;
}

void ApartGroups::find() {
    isFound_ = true;
    std::vector<std::size_t> open;  // indices of groups, or none for other groups
    RtfReader braces(text_, 0, text_.size(), true);
    while (braces.nextBrace()) {
        const std::size_t index = braces.position();
        if (braces.opens()) {
            const std::size_t word = index + (standsAt(text_, index + 1, u"\\*") ? 3 : 1);
            const bool isApart =
                standsAt(text_, word, u"\\") && wordIs(WordTrait::apartGroup, readWord(text_, word).letters);
            open.push_back(isApart ? groups_.size() : none);
            if (isApart) groups_.push_back({word, 0});
        } else if (!open.empty()) {
            if (open.back() != none) groups_[open.back()].end = index;
            open.pop_back();
        }
    }
}

}  // namespace velmor
