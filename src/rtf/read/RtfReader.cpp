#include "rtf/read/RtfReader.h"

#include <algorithm>
#include <limits>

namespace velmor {

std::size_t skipClosingBraces(std::u16string_view text, std::size_t index) noexcept {
    while (index < text.size() && (text[index] == u'}' || isLineEnd(text[index]))) ++index;
    return index;
}

std::optional<std::int32_t> wholeNumber(std::u16string_view text) noexcept {
    const bool negative = text.starts_with(u'-');
    if (negative) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    const std::int64_t limit = std::numeric_limits<std::int32_t>::max() + std::int64_t{negative};
    std::int64_t value = 0;
    for (const char16_t digit : text) {
        if (!isDigit(digit)) return std::nullopt;
        value = value * 10 + (digit - u'0');
        if (value > limit) return std::nullopt;
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

std::int32_t numberOf(std::u16string_view digits) noexcept {
    const bool negative = digits.substr(0, 1) == u"-";
    std::int32_t value = 0;
    for (const char16_t digit : digits.substr(negative)) {
        if (value > 100000000) break;
        value = value * 10 + (digit - u'0');
    }
    return negative ? -value : value;
}

std::size_t skipBinary(std::u16string_view text, std::size_t index) noexcept {
    const std::size_t after = index + 2;
    if (!wordStandsAt(text, index, u"\\bin")) return after;
    std::size_t at = index + 4;
    std::size_t count = 0;
    for (; at < text.size() && isDigit(text[at]) && count < text.size(); ++at) {
        count = count * 10 + (text[at] - u'0');
    }
    if (at == index + 4) return after;
    at = skipBlank(text, at);
    return count < text.size() - at ? at + count : text.size();
}

bool DocumentHeader::next() noexcept {
    while ((at_ = skipWhiteSpace(text_, at_)) < text_.size() && text_[at_] == u'{') {
        const std::size_t end = documentStandsAt(text_, at_) ? noGroupEnd : findGroupEnd(text_, at_ + 1, true);
        if (end == noGroupEnd) return false;  // embedded documents follow the header
        at_ = end + 1;
    }
    if (at_ >= text_.size() || text_[at_] != u'\\') return false;
    word_ = readWord(text_, at_);
    at_ = word_.end;
    // A row ends the search early in a document whose text is in groups.
    const WordMeaning meaning = meaningOf(word_.letters);
    return !word_.letters.empty() && !meaning.is(WordTrait::beginsText) && meaning.word != Word::trowd;
}

GroupOpening readOpening(std::u16string_view text, std::size_t brace) noexcept {
    GroupOpening opening;
    opening.word = skipWhiteSpace(text, brace + 1);
    opening.ignorable = standsAt(text, opening.word, u"\\*");
    if (opening.ignorable) opening.word = skipWhiteSpace(text, opening.word + 2);
    if (standsAt(text, opening.word, u"\\")) opening.letters = readWord(text, opening.word).letters;
    return opening;
}

// Units are read in blocks, which compilers compare several at a time.
std::size_t findBrace(std::u16string_view text, std::size_t index) noexcept {
    constexpr std::size_t block = 16;
    for (; index + block <= text.size(); index += block) {
        const char16_t* const units = text.data() + index;
        std::uint16_t found = 0;
        for (std::size_t i = 0; i < block; ++i) found |= static_cast<std::uint16_t>((units[i] | 6) == 0x7F);
        if (found != 0) break;
    }
    while (index < text.size() && text[index] != u'{' && text[index] != u'}') ++index;
    return index;
}

std::size_t findGroupEnd(std::u16string_view text, std::size_t from, bool tolerant) noexcept {
    RtfReader reader(text, from, text.size(), tolerant);
    for (std::size_t depth = 1; reader.nextBrace();) {
        depth += reader.opens() ? 1 : static_cast<std::size_t>(-1);
        if (depth == 0) return reader.position();
    }
    return noGroupEnd;
}

bool RtfReader::nextPlainBrace() noexcept {
    at_ = findBrace(text_, at_);
    if (at_ >= limit_) return false;
    counts_ = at_ == 0 || text_[at_ - 1] != u'\\' || documentStandsAt(text_, at_);
    if (counts_) return takeBrace();
    position_ = at_++;
    return true;
}

bool RtfReader::nextUnescapedBrace() noexcept {
    while (at_ < limit_) {
        const char16_t unit = text_[at_];
        if (unit == u'{' || unit == u'}') return takeBrace();
        at_ = unit == u'\\' ? skipEscape(text_, at_) : at_ + 1;
    }
    return false;
}

std::size_t RtfSearch::find(std::u16string_view sought, std::size_t from, Comparison comparison) noexcept {
    while ((from = findText(text_, sought, from, comparison)) != text_.npos) {
        const std::size_t after = tolerant_ ? skipData(from) : from;
        if (after == from && !isEscaped(text_, from)) break;
        from = std::max(after, from + 1);
    }
    return from;
}

std::size_t RtfSearch::findWord(std::u16string_view word, std::size_t from) noexcept {
    std::size_t at = find(word, from);
    while (at != text_.npos && !wordStandsAt(text_, at, word)) at = find(word, at + 1);
    return at;
}

// The end of the data around `index`; `index` itself outside of data.
std::size_t RtfSearch::skipData(std::size_t index) noexcept {
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

}  // namespace velmor
