#include "rtf/tables/ApartGroups.h"

namespace velmor {

std::size_t firstWordOfApartGroup(std::u16string_view text, std::size_t brace) noexcept {
    const std::size_t word = brace + (standsAt(text, brace + 1, u"\\*") ? 3 : 1);
    return standsAt(text, word, u"\\") && wordIs(WordTrait::apartGroup, readWord(text, word).letters) ? word : 0;
}

std::vector<TextRange> findApartGroups(std::u16string_view text) {
    constexpr std::size_t other = static_cast<std::size_t>(-1);
    std::vector<TextRange> groups;
    std::vector<std::size_t> open;  // indices in groups
    for (RtfReader braces(text, 0, text.size(), true); braces.nextBrace();) {
        if (braces.opens()) {
            const std::size_t word = firstWordOfApartGroup(text, braces.position());
            open.push_back(word != 0 ? groups.size() : other);
            if (word != 0) groups.push_back({word, 0});
        } else if (!open.empty()) {
            if (open.back() != other) groups[open.back()].end = braces.position();
            open.pop_back();
        }
    }
    std::erase_if(groups, [](const TextRange& group) { return group.end == 0; });
    return groups;
}

}  // namespace velmor
