#include "rtf/edit/ProtectRTF.h"

#include "text/RtfStart.h"

namespace velmor {
namespace {

constexpr std::u16string_view paragraphEnd = u"\\par ";

constexpr bool isSpecial(char16_t unit) {
    return unit == u'\\' || unit == u'{' || unit == u'}';
}

// Without branches, so that the compiler can compare many units at once.
std::size_t growth(std::u16string_view text) {
    std::size_t specials = 0;
    for (const char16_t unit : text) specials += isSpecial(unit);
    std::size_t lines = 0;
    for (std::size_t i = 1; i < text.size(); ++i) lines += int{text[i - 1] == u'\r'} & int{text[i] == u'\n'};
    return specials + lines * (paragraphEnd.size() - 2);
}

}  // namespace

std::size_t protectedRTFLength(std::u16string_view psValue) noexcept {
    return psValue.size() + (psValue.starts_with(rtfStart) ? 0 : growth(psValue));
}

void ProtectRTFCode(std::u16string& psValue) {
    std::size_t from = psValue.size();
    psValue.resize(protectedRTFLength(psValue));
    // From the end: the read place precedes the written one until all escapes are done.
    for (std::size_t to = psValue.size(); to != from;) {
        const char16_t unit = psValue[--from];
        if (unit == u'\n' && from > 0 && psValue[from - 1] == u'\r') {
            --from;
            to -= paragraphEnd.size();
            paragraphEnd.copy(&psValue[to], paragraphEnd.size());
        } else {
            psValue[--to] = unit;
            if (isSpecial(unit)) psValue[--to] = u'\\';
        }
    }
}

}  // namespace velmor
