#include <algorithm>
#include <array>
#include <cstdint>

#include "text/Compare.h"

// A search tests for the sought text's two rarest units, a block of places at a time, and compares
// only where both match. If the comparisons keep failing late (a sought text like "aaab" in a text
// like "aaaa"), the search switches to Crochemore and Perrin's two-way algorithm, which is linear for
// every input and needs no memory. Text comparison folds units as it reads them.

namespace velmor {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;

template <bool ignoresCase>
char16_t folded(char16_t unit) noexcept {
    return ignoresCase ? foldUnit(unit) : unit;
}

// ---- The quick path: blocks of places, two rare units

// ASCII from the most to the least frequent in RTF; units that are not listed are rarer.
constexpr std::u16string_view commonUnits =
    u"\\0fre latdins2c1bpo{}3h548u6g7m9w;xvTy'-*Nq.AR?kCE:SFLzDjBMHPWI></)GU(O,=VK\"YJ~_#ZX%$!Q&+@^[]`|\r\n";

constexpr auto rarityOf = [] {
    std::array<std::uint8_t, 128> table{};
    table.fill(128);
    for (std::size_t i = 0; i < commonUnits.size(); ++i) table[commonUnits[i]] = static_cast<std::uint8_t>(i);
    return table;
}();

// One unit of the sought text. It matches where (unit | mask) == value.
struct Anchor {
    std::size_t offset = 0;
    std::uint16_t mask = 0;
    std::uint16_t value = 0;
};

template <bool ignoresCase>
class Filter {
public:
    explicit Filter(std::u16string_view sought) noexcept {
        int rarest = -1, second = -1;
        for (std::size_t i = 0; i < std::min<std::size_t>(sought.size(), 64); ++i) {
            const char16_t unit = folded<ignoresCase>(sought[i]);
            if (ignoresCase && unit >= 0x80) continue;
            const int rarity = unit < 0x80 ? rarityOf[unit] : 255;
            const bool letter = ignoresCase && unit >= u'a' && unit <= u'z';
            const Anchor anchor{i, static_cast<std::uint16_t>(letter ? 0x20 : 0), unit};
            if (rarity > rarest) {
                second_ = first_, second = rarest;
                first_ = anchor, rarest = rarity;
            } else if (rarity > second) {
                second_ = anchor, second = rarity;
            }
        }
        usable_ = rarest >= 0;
        if (second < 0) second_ = first_;
    }

    // False if no unit can be recognised by value and mask alone.
    bool usable() const noexcept { return usable_; }
    // How many of the next `places` can be skipped: all, or those before one where both units match.
    std::size_t next(const char16_t* place, std::size_t places) const noexcept {
        const Filter own = *this;  // a local copy lets the compiler keep it in registers
        std::size_t passed = 0;
        while (places - passed >= block && !own.anyOf<block>(place + passed)) passed += block;
        while (places - passed >= small && !own.anyOf<small>(place + passed)) passed += small;
        while (passed < places && !own.anyOf<1>(place + passed)) ++passed;
        return passed;
    }

private:
    static constexpr std::size_t block = 64;
    static constexpr std::size_t small = 16;

    static std::uint16_t differs(const char16_t* place, const Anchor& anchor) noexcept {
        const std::uint16_t unit = place[anchor.offset];
        return static_cast<std::uint16_t>((ignoresCase ? unit | anchor.mask : unit) ^ anchor.value);
    }
    // True if both units match at one of `count` places. No early exit, so that it vectorises.
    template <std::size_t count>
    bool anyOf(const char16_t* place) const noexcept {
        std::uint16_t any = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const bool here = (differs(place + i, first_) | differs(place + i, second_)) == 0;
            any = static_cast<std::uint16_t>(any | (here ? 0xFFFF : 0));
        }
        return any != 0;
    }

    Anchor first_;
    Anchor second_;
    bool usable_ = false;
};

template <bool ignoresCase>
bool standsAt(std::u16string_view sought, const char16_t* place) noexcept {
    return std::equal(sought.begin(), sought.end(), place,
                      [](char16_t a, char16_t b) { return a == b || (ignoresCase && foldUnit(a) == foldUnit(b)); });
}

// ---- The two-way search

// Texts read by index, folded; backwards, the last unit is the first.
template <bool ignoresCase, bool backwards>
struct Reader {
    std::u16string_view text;

    std::size_t size() const noexcept { return text.size(); }
    char16_t operator[](std::size_t index) const noexcept {
        return folded<ignoresCase>(text[backwards ? text.size() - 1 - index : index]);
    }
};

struct Factorization {
    std::size_t critical;
    std::size_t period;
};

// The start of the greatest suffix in the order that `precedes` gives, and its period.
template <typename Text, typename Order>
Factorization greatestSuffix(const Text& text, Order precedes) noexcept {
    std::size_t suffix = 0, candidate = 1, matched = 0, period = 1;
    while (candidate + matched < text.size()) {
        const char16_t a = text[candidate + matched];
        const char16_t b = text[suffix + matched];
        if (precedes(a, b)) {
            candidate += matched + 1;
            matched = 0;
            period = candidate - suffix;
        } else if (a != b) {
            suffix = candidate++;
            matched = 0;
            period = 1;
        } else if (++matched == period) {
            candidate += period;
            matched = 0;
        }
    }
    return {suffix, period};
}

template <typename Text>
Factorization factorize(const Text& text) noexcept {
    const Factorization up = greatestSuffix(text, [](char16_t a, char16_t b) { return a < b; });
    const Factorization down = greatestSuffix(text, [](char16_t a, char16_t b) { return a > b; });
    return up.critical > down.critical ? up : down;
}

template <typename Text>
std::size_t findTwoWay(const Text& text, const Text& sought) noexcept {
    const std::size_t size = sought.size();
    auto [critical, period] = factorize(sought);
    std::size_t shared = 0;  // how far the sought text overlaps itself when it moves by a period
    while (shared < critical && shared + period < size && sought[shared] == sought[shared + period]) ++shared;
    const bool periodic = shared == critical;
    if (!periodic) period = std::max(critical, size - critical) + 1;

    std::size_t known = 0;  // units at the start that are known to match
    for (std::size_t place = 0; place + size <= text.size();) {
        std::size_t right = std::max(critical, known);
        while (right < size && sought[right] == text[place + right]) ++right;
        if (right < size) {
            place += right - critical + 1;
            known = 0;
            continue;
        }
        std::size_t left = critical;
        while (left > known && sought[left - 1] == text[place + left - 1]) --left;
        if (left <= known) return place;
        place += period;
        known = periodic ? size - period : 0;
    }
    return npos;
}

// ---- Both together

template <bool ignoresCase>
std::size_t findForward(std::u16string_view text, std::u16string_view sought, std::size_t start) noexcept {
    const auto thorough = [&](std::size_t from) {
        using Text = Reader<ignoresCase, false>;
        const std::size_t hit = findTwoWay(Text{text.substr(from)}, Text{sought});
        return hit == npos ? npos : from + hit;
    };
    const Filter<ignoresCase> filter(sought);
    if (!filter.usable()) return thorough(start);
    std::size_t compared = 0;
    const std::size_t end = text.size() - sought.size() + 1;
    for (std::size_t place = start;; ++place) {
        place += filter.next(text.data() + place, end - place);
        if (place == end) return npos;
        if (standsAt<ignoresCase>(sought, text.data() + place)) return place;
        compared += sought.size();
        // The comparisons cost several times the distance covered.
        if (compared > 4096 + 8 * (place - start)) return thorough(place + 1);
    }
}

template <bool ignoresCase>
std::size_t findBackward(std::u16string_view text, std::u16string_view sought) noexcept {
    using Text = Reader<ignoresCase, true>;
    const std::size_t hit = findTwoWay(Text{text}, Text{sought});
    return hit == npos ? npos : text.size() - hit - sought.size();
}

}  // namespace

std::size_t findText(std::u16string_view text, std::u16string_view sought, std::size_t start,
                     Comparison comparison) noexcept {
    if (start > text.size() || sought.size() > text.size() - start) return npos;
    if (sought.empty()) return start;
    return comparison == Comparison::binary ? findForward<false>(text, sought, start)
                                            : findForward<true>(text, sought, start);
}

std::size_t findTextReverse(std::u16string_view text, std::u16string_view sought, Comparison comparison) noexcept {
    if (sought.size() > text.size()) return npos;
    if (sought.empty()) return text.size();
    return comparison == Comparison::binary ? findBackward<false>(text, sought) : findBackward<true>(text, sought);
}

}  // namespace velmor
