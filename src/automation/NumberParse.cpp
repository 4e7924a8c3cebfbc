#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "automation/NumberText.h"
#include "text/Characters.h"

namespace velmor::automation::portable {

namespace {

// Far beyond every type's range, so that adding to it cannot overflow.
constexpr std::int64_t exponentLimit = 1'000'000;

class NumberReader {
public:
    explicit NumberReader(std::u16string_view text) : text_(text) {}

    std::optional<ParsedNumber> read() {
        readAround(true);
        if (peek() == u'&' ? !readRadix() : !readDigits()) return std::nullopt;
        readAround(false);
        if (at_ < text_.size() || open_) return std::nullopt;
        number_.negative = minus_ || parentheses_;
        return std::move(number_);
    }

private:
    char16_t peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0'; }

    // Before or after the digits: blanks and, each once, a sign, "$" and a parenthesis.
    void readAround(bool before) {
        for (; at_ < text_.size(); ++at_) {
            const char16_t unit = text_[at_];
            if (isNumberBlank(unit) || takeSign(unit) || takeOnce(unit, u'$', currency_)) continue;
            if (before ? !takeOnce(unit, u'(', parentheses_) : unit != u')' || !open_) return;
            open_ = before;
        }
    }

    bool takeSign(char16_t unit) {
        return takeOnce(unit, u'+', sign_) || (takeOnce(unit, u'-', sign_) && (minus_ = true));
    }

    static bool takeOnce(char16_t unit, char16_t wanted, bool& taken) {
        if (unit != wanted || taken) return false;
        return taken = true;
    }

    bool readDigits() {
        const std::size_t start = at_;
        while (isDigit(peek()) || (peek() == u',' && at_ > start)) takeDigit(true);
        bool any = at_ > start;
        if (peek() == u'.') {
            ++at_;
            any = any || isDigit(peek());
            while (isDigit(peek())) takeDigit(false);
        }
        if (!any) return false;
        readExponent();
        finishDigits();
        return true;
    }

    void takeDigit(bool whole) {
        const char16_t unit = text_[at_++];
        if (unit == u',') return;
        const bool leadingZero = unit == u'0' && number_.digits.empty();
        if (!leadingZero) number_.digits += static_cast<char>(unit);
        if (whole && !leadingZero) ++exponent_;
        if (!whole && leadingZero) --exponent_;
    }

    // "e" and an optional sign count only when a digit follows.
    void readExponent() {
        if (peek() != u'e' && peek() != u'E') return;
        const bool sign = peek(1) == u'+' || peek(1) == u'-';
        if (!isDigit(peek(sign ? 2 : 1))) return;
        const bool negative = peek(1) == u'-';
        at_ += sign ? 2 : 1;
        std::int64_t value = 0;
        for (; isDigit(peek()); ++at_) value = std::min<std::int64_t>(value * 10 + (peek() - u'0'), 1'000'000'000'000);
        exponent_ += negative ? -value : value;
    }

    void finishDigits() {
        std::string& digits = number_.digits;
        while (!digits.empty() && digits.back() == '0') digits.pop_back();
        if (digits.empty()) exponent_ = 0;
        number_.exponent = static_cast<std::int32_t>(std::clamp(exponent_, -exponentLimit, exponentLimit));
    }

    bool readRadix() {
        const char16_t kind = static_cast<char16_t>(peek(1) | 0x20);
        if (kind != u'h' && kind != u'o') return false;
        const unsigned shift = kind == u'h' ? 4 : 3;
        at_ += 2;
        const std::size_t start = at_;
        std::uint64_t value = 0;
        for (int digit = radixDigit(shift); digit >= 0; digit = radixDigit(shift)) {
            value = value << shift | static_cast<unsigned>(digit);
            if (value > 0xFFFFFFFFu) return false;
            ++at_;
        }
        number_.radixValue = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
        return at_ > start;
    }

    int radixDigit(unsigned shift) const {
        const int digit = hexadecimalDigit(peek());
        return digit < (1 << shift) ? digit : -1;
    }

    std::u16string_view text_;
    std::size_t at_ = 0;
    ParsedNumber number_;
    std::int64_t exponent_ = 0;
    bool sign_ = false, minus_ = false, currency_ = false, parentheses_ = false, open_ = false;
};

// The text of the largest double is rounded up, and so a little larger than any double.
bool isLargestText(const ParsedNumber& number) {
    return number.digits == "179769313486232" && number.exponent == 309;
}

// The first `count` digits of 0.digits as a whole number, rounded half to even.
std::string roundedDigits(const std::string& digits, std::int64_t count) {
    if (count < 0) return "0";
    const auto kept = static_cast<std::size_t>(count);
    if (kept >= digits.size()) return std::string(digits).append(kept - digits.size(), '0');
    std::string whole = digits.substr(0, kept);
    const bool half = digits[kept] == '5' && kept + 1 == digits.size();
    const bool odd = kept > 0 && (whole.back() - '0') % 2 == 1;
    const bool up = half ? odd : digits[kept] >= '5';
    return up ? nextNumber(std::move(whole)) : "0" + whole;
}

// Nothing when the number needs more than 96 bits. Zero is never negative.
std::optional<Decimal> decimalOfDigits(std::string_view digits, std::uint8_t scale, bool negative) noexcept {
    std::array<std::uint32_t, 3> words{};  // least first
    for (const char digit : digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (std::uint32_t& word : words) {
            carry += std::uint64_t{word} * 10;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) return std::nullopt;
    }
    const std::uint64_t low = std::uint64_t{words[1]} << 32 | words[0];
    return Decimal{words[2], low, scale, negative && (words[2] != 0 || low != 0)};
}

}  // namespace

std::optional<ParsedNumber> parseNumberText(std::u16string_view text) {
    return NumberReader(text).read();
}

std::optional<double> doubleOf(const ParsedNumber& number) {
    if (number.radixValue) return number.negative ? -static_cast<double>(*number.radixValue) : *number.radixValue;
    if (number.digits.empty() || number.exponent < -400) return number.negative ? -0.0 : 0.0;
    if (number.exponent > 400) return std::nullopt;
    std::string text = number.digits;
    text += 'e';
    text += std::to_string(number.exponent - static_cast<std::int64_t>(number.digits.size()));
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        if (number.exponent > 0 && !isLargestText(number)) return std::nullopt;
        value = number.exponent > 0 ? std::numeric_limits<double>::max() : 0;
    }
    return number.negative ? -value : value;
}

std::optional<std::int64_t> integerOf(const ParsedNumber& number, int decimals) {
    const std::int64_t kept = std::int64_t{number.exponent} + decimals;
    if (kept > 19) return std::nullopt;
    std::string text(number.negative ? 1 : 0, '-');
    text += roundedDigits(number.digits, kept);
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) return std::nullopt;
    return value;
}

std::optional<Decimal> decimalOf(const ParsedNumber& number) {
    if (number.exponent > 29) return std::nullopt;
    const auto wanted = static_cast<std::int64_t>(number.digits.size()) - number.exponent;
    std::int64_t scale = std::clamp<std::int64_t>(wanted, 0, 28);
    scale = std::min<std::int64_t>(scale, 29 - number.exponent);
    for (; scale >= 0; --scale) {
        const std::string digits = roundedDigits(number.digits, number.exponent + scale);
        if (const auto decimal = decimalOfDigits(digits, static_cast<std::uint8_t>(scale), number.negative))
            return decimal;
    }
    return std::nullopt;
}

}  // namespace velmor::automation::portable
