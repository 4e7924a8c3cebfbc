#include "automation/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "Random.h"
#include "automation/Portable.h"
#include "text/Encoding.h"

namespace velmor::automation::portable {
namespace {

constexpr auto wholeRange = std::numeric_limits<std::uint64_t>::max();

template <class Number>
void checkTexts(std::initializer_list<std::pair<Number, const char*>> cases) {
    for (const auto& [value, text] : cases) EXPECT_EQ(toUtf8(numberText(value)), text);
}

// clang-format off
TEST(NumberText, IsWritten) {
    checkTexts<double>({
        {0.0, "0"}, {-0.0, "0"}, {1.5, "1.5"}, {-0.1, "-0.1"}, {0.1 + 0.2, "0.3"}, {1.0 / 3, "0.333333333333333"},
        {2.0 / 3, "0.666666666666667"}, {999999999999999.4, "999999999999999"},
        {999999999999999.9, "1E+15"},  // rounding makes the sixteenth digit
        {-1.5e15, "-1.5E+15"}, {0.0001, "0.0001"}, {0.00099999999999999999, "0.001"}, {0.00001, "1E-05"},
        {0.000015, "1.5E-05"}, {0.00009999999999999999, "0.0001"},
        {100000000000000.5, "100000000000001"},  // exact ties round away from zero
        {100000000000001.5, "100000000000002"}, {-100000000000000.5, "-100000000000001"},
        {1000000000000.0625 + 0.0625, "1000000000000.13"}, {2251799813685248.5, "2.25179981368525E+15"},
        {5e-324, "4.94065645841247E-324"}, {std::numeric_limits<double>::infinity(), "1.#INF"}});
    checkTexts<float>({
        {0.1f, "0.1"}, {-0.0f, "0"}, {16777216.0f, "1.677722E+07"}, {9999999.0f, "9999999"}, {1e7f, "1E+07"},
        {1000000.5f, "1000001"}, {1e-4f, "0.0001"}, {1e-45f, "1.401298E-45"}, {9.76933e-7f, "9.769331E-07"}});
    checkTexts<Currency>({
        {{0}, "0"}, {{-1}, "-0.0001"}, {{99900}, "9.99"}, {{10000}, "1"}, {{-12345678}, "-1234.5678"},
        {{std::numeric_limits<std::int64_t>::min()}, "-922337203685477.5808"}});
    checkTexts<Decimal>({
        {{0, 0, 5, true}, "0"}, {{0, 125, 1, false}, "12.5"}, {{0, 1500, 3, true}, "-1.5"},
        {{0, 1, 28, false}, "0.0000000000000000000000000001"},
        {{0xFFFFFFFF, wholeRange, 0, false}, "79228162514264337593543950335"}, {{1, 0, 0, false}, "18446744073709551616"},
        {{0xFFFFFFFF, wholeRange, 28, true}, "-7.9228162514264337593543950335"}});
}
// clang-format on

TEST(NumberText, IsRead) {
    const auto no = std::nullopt;
    // clang-format off
    const std::pair<const char16_t*, std::optional<double>> cases[] = {
        {u"0", 0}, {u" 12 ", 12}, {u"\t12\r\n", 12}, {u"+12", 12}, {u"12-", -12}, {u"- 12", -12}, {u"(12)", -12},
        {u"($12)", -12}, {u"-$12", -12}, {u"12$", 12}, {u"1,234.5", 1234.5}, {u"1,2,3", 123}, {u".5", 0.5},
        {u"5.", 5}, {u"1e5", 1e5}, {u"1E-5", 1e-5}, {u".5e1", 5}, {u"1e308", 1e308}, {u"1e-400", 0},
        {u"0e99999999999", 0}, {u"&H10", 16}, {u"&hff", 255}, {u"&HFFFFFFFF", -1}, {u"&O17", 15}, {u"-&H10", -16},
        {u"0.1", 0.1}, {u"12345678901234567890", 12345678901234567890.0}, {u"", no}, {u" ", no}, {u".", no},
        {u"-", no}, {u"--12", no}, {u"-12-", no}, {u"(12", no}, {u"12)", no}, {u"$$12", no}, {u",123", no},
        {u"1.5,0", no}, {u"1.2.3", no}, {u"1e", no}, {u"1e+", no}, {u"e5", no}, {u"1 e5", no}, {u"1e400", no},
        {u"1e99999999999999999999", no}, {u"12 34", no}, {u"12abc", no}, {u"&H", no}, {u"&HG", no}, {u"&O8", no},
        {u"&H100000000", no}, {u"0x10", no}, {u"10%", no}, {u"True", no}, {u"$", no}, {u"()", no},
    };
    // clang-format on
    for (const auto& [text, value] : cases) EXPECT_EQ(parseNumber(text), value) << toUtf8(text);
}

std::string libraryText(const char* format, double value, int digits) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, format, digits, value);
    return buffer;
}

// The output of the C library for %.15G and %.7G; nothing for ties, which it rounds to even.
template <class Number>
void expectLibraryText(Number value, int digits) {
    const std::string longer = libraryText("%.*e", value, digits);
    const bool isTie = longer.find("5e") != std::string::npos && std::strtod(longer.c_str(), nullptr) == value;
    if (!std::isfinite(value) || isTie) return;
    EXPECT_EQ(toUtf8(numberText(value)), libraryText("%.*G", value, digits));
}

TEST(NumberText, OfRandomNumbersIsTheCLibrarys) {
    Random random;
    for (int round = 0; round < 20000; ++round) {
        expectLibraryText(std::bit_cast<double>(random.bits()), 15);
        expectLibraryText(std::bit_cast<float>(static_cast<std::uint32_t>(random())), 7);
        std::string text = std::to_string(random.bits() >> random.below(60));
        text.insert(random.below(text.size()), ".");
        ASSERT_EQ(parseNumber(fromUtf8(text)), std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(NumberText, OfRandomNumbersIsReadBack) {
    Random random;
    for (int round = 0; round < 10000; ++round) {
        const auto digits = static_cast<double>(random.bits() % 1'000'000'000'000'000);
        const auto text = numberText(digits * std::pow(10.0, static_cast<int>(random.below(40)) - 20));
        ASSERT_EQ(numberText(parseNumber(text).value()), text);
        const Decimal value{static_cast<std::uint32_t>(random()), random.bits(),
                            static_cast<std::uint8_t>(random.below(29)), random.below(2) == 0};
        const auto read = decimalOf(parseNumberText(numberText(value)).value());
        ASSERT_TRUE(read && compareDecimals(*read, value) == 0) << toUtf8(numberText(value));
    }
}

TEST(Decimals, AreOrderedByValue) {
    // clang-format off
    const Decimal ascending[] = {
        {1, 0, 0, true}, {0, 20, 0, true}, {0, 15, 1, true}, {0, 0, 3, true}, {0, 1, 28, false}, {0, 149, 2, false},
        {0, 15, 1, false}, {0, 1501, 3, false}, {0, 2, 0, false}, {0xFFFFFFFF, 0, 1, false},
    };
    // clang-format on
    for (std::size_t left = 0; left < std::size(ascending); ++left) {
        for (std::size_t right = 0; right < std::size(ascending); ++right) {
            EXPECT_TRUE(compareDecimals(ascending[left], ascending[right]) == (left <=> right)) << left;
        }
    }
    EXPECT_TRUE(compareDecimals({0, 15, 1, false}, {0, 1500, 3, false}) == 0);
}

TEST(Decimals, RoundTextsHalfToEven) {
    // clang-format off
    const std::pair<const char16_t*, const char*> cases[] = {  // "-": does not fit
        {u"79228162514264337593543950335", "79228162514264337593543950335"},
        {u"79228162514264337593543950335.4", "79228162514264337593543950335"},
        {u"79228162514264337593543950336", "-"}, {u"7.9228162514264337593543950336", "7.922816251426433759354395034"},
        {u"0.00000000000000000000000000005", "0"},
        {u"0.00000000000000000000000000015", "0.0000000000000000000000000002"},
        {u"1e28", "10000000000000000000000000000"}, {u"1e29", "-"}, {u"1e-400", "0"}, {u"-1.50", "-1.5"},
    };
    // clang-format on
    for (const auto& [text, shown] : cases) {
        const auto decimal = decimalOf(parseNumberText(text).value());
        EXPECT_EQ(decimal ? toUtf8(numberText(*decimal)) : "-", shown) << toUtf8(text);
    }
}

}  // namespace
}  // namespace velmor::automation::portable
