#include "automation/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "automation/DecimalNumber.h"

namespace velmor::automation::portable {

namespace {

// The digits of a positive number: d.ddd times 10 to the exponent, without trailing zeros.
struct Digits {
    std::array<char, 24> text{};
    int count = 0;
    int exponent = 0;

    void trim() {
        while (count > 1 && text[static_cast<std::size_t>(count) - 1] == '0') --count;
    }
};

// Parses the scientific form of std::to_chars.
Digits digitsOf(std::string_view scientific) {
    Digits digits;
    std::size_t at = 0;
    for (; at < scientific.size() && scientific[at] != 'e'; ++at) {
        if (scientific[at] == '.') continue;
        if (static_cast<std::size_t>(digits.count) < digits.text.size()) {
            digits.text[static_cast<std::size_t>(digits.count++)] = scientific[at];
        }
    }
    at += scientific.substr(at).starts_with("e+") ? 2 : 1;
    std::from_chars(scientific.data() + at, scientific.data() + scientific.size(), digits.exponent);
    digits.trim();
    return digits;
}

// Adds one to the last of the digits.
void incrementLast(Digits& digits) {
    int at = digits.count - 1;
    while (at >= 0 && digits.text[static_cast<std::size_t>(at)] == '9')
        digits.text[static_cast<std::size_t>(at--)] = '0';
    if (at >= 0) {
        ++digits.text[static_cast<std::size_t>(at)];
    } else {
        digits.text[0] = '1';  // 99..9 became 10..0
        ++digits.exponent;
    }
}

// Ties away from zero.
void roundTo(Digits& digits, int significant) {
    if (digits.count <= significant) return;
    const bool up = digits.text[static_cast<std::size_t>(significant)] >= '5';
    digits.count = significant;
    if (up) incrementLast(digits);
    digits.trim();
}

Digits shortestDigits(double value) {
    std::array<char, 32> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific).ptr;
    return digitsOf({buffer.data(), static_cast<std::size_t>(end - buffer.data())});
}

Digits exactDigits(double value) {
    constexpr int kLongestExpansion = 770;
    std::array<char, kLongestExpansion + 16> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific,
                                   kLongestExpansion)
                         .ptr;
    return digitsOf({buffer.data(), static_cast<std::size_t>(end - buffer.data())});
}

// The value rounded to 15 digits or fewer from its exact expansion.
Digits roundedDigits(double value, int significant) {
    // The shortest digits that give the value back round like the exact ones: a decimal between
    // the two would be as short, and nearer. That leaves shortest digits that are a tie
    // themselves, and values too small to keep 15 digits.
    Digits digits = shortestDigits(value);
    const bool tie = digits.count == significant + 1 && digits.text[static_cast<std::size_t>(significant)] == '5';
    if (tie || value < std::numeric_limits<double>::min()) digits = exactDigits(value);
    roundTo(digits, significant);
    return digits;
}

class TextWriter {
public:
    void put(char unit) { buffer_[size_++] = static_cast<char16_t>(unit); }
    void zeros(int count) {
        for (; count > 0; --count) put('0');
    }
    void digits(const Digits& digits, int from, int to) {
        for (; from < to; ++from) put(digits.text[static_cast<std::size_t>(from)]);
    }
    std::u16string text() const { return std::u16string(buffer_.data(), size_); }

private:
    std::array<char16_t, 48> buffer_;
    std::size_t size_ = 0;
};

void writeExponentForm(TextWriter& out, const Digits& digits) {
    out.digits(digits, 0, 1);
    if (digits.count > 1) out.put('.');
    out.digits(digits, 1, digits.count);
    out.put('E');
    out.put(digits.exponent < 0 ? '-' : '+');
    const int size = std::abs(digits.exponent);
    if (size >= 100) out.put(static_cast<char>('0' + size / 100));
    out.put(static_cast<char>('0' + size / 10 % 10));
    out.put(static_cast<char>('0' + size % 10));
}

void writePlainForm(TextWriter& out, const Digits& digits) {
    const int whole = digits.exponent + 1;
    if (whole <= 0) {
        out.put('0');
        out.put('.');
        out.zeros(-whole);
        out.digits(digits, 0, digits.count);
        return;
    }
    out.digits(digits, 0, std::min(whole, digits.count));
    out.zeros(whole - digits.count);
    if (digits.count > whole) out.put('.');
    out.digits(digits, std::min(whole, digits.count), digits.count);
}

std::u16string floatText(double value, int significant) {
    if (value == 0) return u"0";
    if (std::isnan(value)) return u"-1.#IND";
    if (std::isinf(value)) return value < 0 ? u"-1.#INF" : u"1.#INF";
    const Digits digits = roundedDigits(std::fabs(value), significant);
    TextWriter out;
    if (value < 0) out.put('-');
    if (digits.exponent < -4 || digits.exponent >= significant) {
        writeExponentForm(out, digits);
    } else {
        writePlainForm(out, digits);
    }
    return out.text();
}

template <class Integer>
std::u16string integerText(Integer value) {
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return std::u16string(buffer.data(), end);
}

// A whole number, given as its digits, with a point before the last `decimals` of them.
std::u16string pointedText(bool negative, std::string digits, std::size_t decimals) {
    if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
    const std::size_t whole = digits.size() - decimals;
    std::size_t end = digits.size();
    while (end > whole && digits[end - 1] == '0') --end;
    std::u16string text;
    text.reserve(end + 2);
    if (negative && digits.find_first_not_of('0') != std::string::npos) text += u'-';
    text.append(digits.begin(), digits.begin() + static_cast<std::ptrdiff_t>(whole));
    if (end > whole) text += u'.';
    text.append(digits.begin() + static_cast<std::ptrdiff_t>(whole), digits.begin() + static_cast<std::ptrdiff_t>(end));
    return text;
}

}  // namespace

std::u16string numberText(double value) {
    if (std::fabs(value) < 1e15 && value == std::trunc(value)) return integerText(static_cast<std::int64_t>(value));
    return floatText(value, 15);
}

std::u16string numberText(float value) {
    return floatText(value, 7);
}

std::u16string numberText(std::int32_t value) {
    return integerText(value);
}

std::u16string numberText(Currency value) {
    const bool negative = value.scaled < 0;
    const auto bits = static_cast<std::uint64_t>(value.scaled);
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), negative ? 0 - bits : bits).ptr;
    return pointedText(negative, std::string(buffer.data(), end), 4);
}

std::u16string numberText(Decimal value) {
    return pointedText(value.negative, Magnitude::of(value).digits(), value.scale);
}

}  // namespace velmor::automation::portable
