#include "rtf/pages/HeaderWords.h"

#include "rtf/read/RtfReader.h"

namespace velmor {

std::u16string groupFor(HeaderName name, std::u16string_view group) {
    const std::u16string opening(name.opening());
    if (group.empty()) return opening + u"\\pard\\plain\\fs2\\par}";  // a low line, which moves nothing
    return opening + std::u16string(group.substr(2 + readWord(group, 1).letters.size()));
}

HeaderWords HeaderWords::about(HeaderKind kind) const noexcept {
    const bool header = kind == HeaderKind::header;
    HeaderWords words = *this;
    words[header ? Word::footery : Word::headery] = words[header ? Word::pgbrdrfoot : Word::pgbrdrhead] = {};
    return words;
}

void HeaderWords::add(const HeaderWords& more, const HeaderWords& said) noexcept {
    for (std::size_t i = 0; i < words_.size(); ++i) {
        if (!more.words_[i].empty() && said.words_[i].empty()) words_[i] = more.words_[i];
    }
}

std::u16string HeaderWords::text() const {
    std::u16string text;
    for (const std::u16string_view word : words_) text += word;
    return text;
}

}  // namespace velmor
