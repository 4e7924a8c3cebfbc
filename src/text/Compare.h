#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// Text comparison maps one UTF-16 code unit to one code unit (simple case mapping from a generated table), so
// positions and lengths survive it. An ASCII letter equals only its ASCII partner: the Kelvin sign is not a
// "k", the long s is not an "s". Units whose case mapping is longer than one unit stay as they are.
char16_t lowerUnit(char16_t unit) noexcept;
char16_t upperUnit(char16_t unit) noexcept;

// Two units are equal in text comparison when they fold to the same one. A unit, its lower and its
// upper form always do.
inline char16_t foldUnit(char16_t unit) noexcept {
    if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
    return lowerUnit(upperUnit(unit));
}

std::u16string lowerCase(std::u16string_view text);
std::u16string upperCase(std::u16string_view text);

bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) noexcept;

// Equal texts (in the sense of equalIgnoringCase) have equal hashes.
std::size_t hashIgnoringCase(std::u16string_view text) noexcept;

// For containers whose keys are compared so.
struct HashIgnoringCase {
    // Not noexcept: libstdc++ then stores the hashes instead of computing them anew along a bucket.
    std::size_t operator()(std::u16string_view text) const { return hashIgnoringCase(text); }
};
struct EqualIgnoringCase {
    bool operator()(std::u16string_view left, std::u16string_view right) const noexcept {
        return equalIgnoringCase(left, right);
    }
};

enum class Comparison { binary, text };

// 0-based index of the first `sought` at or after `start`, npos without one. An empty `sought` is found at
// `start` when start <= text.size(). Never copies the text; costs time linear in both, whatever they hold.
std::size_t findText(std::u16string_view text, std::u16string_view sought, std::size_t start,
                     Comparison comparison) noexcept;

// 0-based index of the last `sought` in text; npos without one.
std::size_t findTextReverse(std::u16string_view text, std::u16string_view sought, Comparison comparison) noexcept;

}  // namespace velmor
