#include "rtf/BraceScanner.h"

namespace velmor {

std::size_t skipEscape(std::u16string_view text, std::size_t index) noexcept {
    const std::size_t behind = index + 2;
    if (!wordStandsAt(text, index, u"\\bin")) return behind;
    std::size_t at = index + 4;
    std::size_t count = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9' && count < text.size(); ++at) {
        count = count * 10 + (text[at] - u'0');
    }
    if (at == index + 4) return behind;
    at += at < text.size() && text[at] == u' ';
    return count < text.size() - at ? at + count : text.size();
}

bool BraceScanner::nextUnescaped() noexcept {
    while (at_ < text_.size()) {
        const char16_t unit = text_[at_];
        if (unit == u'\\') {
            at_ = skipEscape(text_, at_);
        } else if (unit == u'{' || unit == u'}') {
            position_ = at_++;
            return true;
        } else {
            ++at_;
        }
    }
    return false;
}

}  // namespace velmor
