#include <algorithm>

#include "text/Compare.h"

namespace velmor {

std::size_t findText(std::u16string_view text, std::u16string_view sought, std::size_t start,
                     Comparison comparison) noexcept {
    if (start > text.size() || sought.size() > text.size() - start) return std::u16string_view::npos;
    if (comparison == Comparison::binary) return text.find(sought, start);
    const auto hit = std::search(text.begin() + start, text.end(), sought.begin(), sought.end(),
                                 [](char16_t a, char16_t b) { return foldUnit(a) == foldUnit(b); });
    if (sought.empty()) return start;
    return hit == text.end() ? std::u16string_view::npos : static_cast<std::size_t>(hit - text.begin());
}

std::size_t findTextReverse(std::u16string_view text, std::u16string_view sought, Comparison comparison) noexcept {
    if (comparison == Comparison::binary) return text.rfind(sought);
    if (sought.empty()) return text.size();
    const auto hit = std::find_end(text.begin(), text.end(), sought.begin(), sought.end(),
                                   [](char16_t a, char16_t b) { return foldUnit(a) == foldUnit(b); });
    return hit == text.end() ? std::u16string_view::npos : static_cast<std::size_t>(hit - text.begin());
}

}  // namespace velmor
