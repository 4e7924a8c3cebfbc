#include "properties/Substitution.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

constexpr std::size_t count = 11;
constexpr int firstCode = 181;

// A code that is no character of its own in the code page means the character of its number.
char16_t unitOfCode(int code) {
    const std::u16string text = fromAnsi(std::string(1, static_cast<char>(code)));
    return text.size() == 1 && isSubstitute(text[0]) ? text[0] : static_cast<char16_t>(code);
}

const std::array<char16_t, count>& substitutes() {
    static const std::array<char16_t, count> units = [] {
        std::array<char16_t, count> made{};
        for (std::size_t i = 0; i < count; ++i) made[i] = unitOfCode(firstCode + static_cast<int>(i));
        return made;
    }();
    return units;
}

}  // namespace

std::optional<char16_t> substituteFor(std::u16string_view text) {
    std::array<char16_t, count> folded = substitutes();
    std::transform(folded.begin(), folded.end(), folded.begin(), foldUnit);
    std::array<bool, count> taken{};
    for (const char16_t unit : text) {
        if (!isSubstitute(unit)) continue;
        const char16_t sought = foldUnit(unit);
        for (std::size_t i = 0; i < count; ++i) taken[i] = taken[i] || folded[i] == sought;
    }
    const auto free = std::find(taken.begin(), taken.end(), false);
    if (free == taken.end()) return std::nullopt;
    return substitutes()[static_cast<std::size_t>(free - taken.begin())];
}

void appendSubstituted(std::u16string& target, std::u16string_view text, char16_t substitute) {
    target += substitute;
    const std::size_t from = target.size();
    target += text;
    std::replace(target.begin() + static_cast<std::ptrdiff_t>(from), target.end(), u'"', substitute);
}

std::u16string withoutSubstitute(std::u16string_view substituted) {
    std::u16string restored(substituted.substr(1));
    std::replace(restored.begin(), restored.end(), substituted[0], u'"');
    return restored;
}

}  // namespace velmor
