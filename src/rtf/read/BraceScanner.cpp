#include "rtf/read/BraceScanner.h"

#include <algorithm>

#include "text/Compare.h"

namespace velmor {

std::size_t skipEscape(std::u16string_view text, std::size_t index) noexcept {
    const std::size_t behind = index + 2;
    if (behind > text.size() || text[index + 1] != u'b' || !wordStandsAt(text, index, u"\\bin")) return behind;
    std::size_t at = index + 4;
    std::size_t count = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9' && count < text.size(); ++at) {
        count = count * 10 + (text[at] - u'0');
    }
    if (at == index + 4) return behind;
    at += at < text.size() && text[at] == u' ';
    return count < text.size() - at ? at + count : text.size();
}

std::size_t BinaryData::behind(std::size_t index) noexcept {
    constexpr std::u16string_view word = u"\\bin";
    const std::u16string_view before = text_.substr(0, index);
    while (at_ < index) {
        const std::size_t found = findText(before, word, at_, Comparison::binary);
        if (found == before.npos) {
            at_ = std::max(at_, index - std::min(index, word.size()));
            break;
        }
        at_ = isEscaped(text_, found) ? found + 1 : skipEscape(text_, found);
    }
    return std::max(at_, index);
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
