// Holds the portable conversions against the platform's own, over every pair of a value and a
// target type. Where the two differ on purpose, KnownDifferences.inc says what each gives.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "automation/Convert.h"
#include "automation/PlatformConversions.h"
#include "automation/Portable.h"
#include "platform/win32/Conversions.h"
#include "platform/win32/Windows.h"
#include "text/Encoding.h"

namespace {

using namespace velmor;
using namespace velmor::automation;

struct Target {
    const char* name;
    VariantType type;
    std::optional<Variant> (*portableForm)(const Variant&);
};

template <auto convert>
std::optional<Variant> boxed(const Variant& value) {
    const auto converted = convert(value);
    return converted ? std::optional(Variant(*converted)) : std::nullopt;
}

const Target kTargets[] = {
    {"Integer", VariantType::integer, boxed<portable::toInteger>},
    {"Long", VariantType::longInteger, boxed<portable::toLong>},
    {"Single", VariantType::single, boxed<portable::toSingle>},
    {"Double", VariantType::doubleFloat, boxed<portable::toDouble>},
    {"Boolean", VariantType::boolean, boxed<portable::toBoolean>},
    {"Currency", VariantType::currency, boxed<portable::toCurrency>},
    {"Decimal", VariantType::decimal, boxed<portable::toDecimal>},
    {"Date", VariantType::date, boxed<portable::toDate>},
    {"String", VariantType::string, boxed<portable::toText>},
};

std::string exact(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string show(const Variant& value) {
    if (const auto* number = value.get<double>()) return exact(*number);
    if (const auto* number = value.get<float>()) return exact(*number);
    if (const auto* date = value.get<Date>()) return exact(date->days);
    const auto text = portable::toText(value);
    return text ? toUtf8(*text) : toUtf8(typeNameOf(value));
}

std::string showResult(const std::optional<Variant>& value) {
    return value ? show(*value) : "-";
}

// Printable ASCII, for the table.
std::string escaped(std::u16string_view text) {
    std::string result;
    for (const char16_t unit : text) {
        char code[8] = {static_cast<char>(unit)};
        if (unit < 32 || unit > 126) std::snprintf(code, sizeof code, "\\u%04X", unsigned{unit});
        result += code;
    }
    return result;
}

std::string label(const Variant& value) {
    const auto* text = value.get<std::u16string>();
    return toUtf8(typeNameOf(value)) + " " + (text != nullptr ? escaped(*text) : show(value));
}

std::vector<Variant> numbers() {
    std::vector<Variant> values{Variant(),
                                Variant(true),
                                Variant(false),
                                Variant(std::uint8_t{0}),
                                Variant(std::uint8_t{255}),
                                Variant(std::int16_t{-32768}),
                                Variant(std::int16_t{12}),
                                Variant(std::int32_t{2147483647}),
                                Variant(std::int32_t{-2147483647 - 1}),
                                Variant(std::int32_t{65535}),
                                Variant(std::int32_t{40000}),
                                Variant(std::int32_t{16777217})};
    for (const double each : {0.0,
                              -0.0,
                              0.1,
                              0.2,
                              0.1 + 0.2,
                              1.0 / 3,
                              2.0 / 3,
                              0.5,
                              1.5,
                              2.5,
                              -0.5,
                              -1.5,
                              -2.5,
                              32767.4,
                              32767.5,
                              32768.0,
                              -32768.5,
                              -32769.0,
                              2147483647.0,
                              2147483647.5,
                              2147483648.0,
                              -2147483648.5,
                              -2147483649.0,
                              1e14,
                              1e15,
                              -1e15,
                              999999999999999.0,
                              999999999999999.4,
                              100000000000000.5,
                              999999999999999.9,
                              123456789012345678.0,
                              0.001,
                              0.0001,
                              0.00012345,
                              0.00001,
                              0.000015,
                              1e-5,
                              1.5e-10,
                              1e100,
                              -1.25e-100,
                              1.7976931348623157e308,
                              5e-324,
                              2.2250738585072014e-308,
                              3.4028234663852886e38,
                              3.5e38,
                              1e-46,
                              3.4028235e38,
                              922337203685477.5807,
                              922337203685478.0,
                              -922337203685477.5808,
                              1.00005,
                              1.00015,
                              0.00005,
                              0.00015,
                              7.9228162514264338e28,
                              8e28,
                              1e28,
                              38051.588298611,
                              2958465.5,
                              2958466.0,
                              -657434.0,
                              -657435.0,
                              123456.789,
                              1e21,
                              12345678.5,
                              9.995,
                              -1.25,
                              0.75,
                              4.35,
                              1.005,
                              1234567890123456.7,
                              0.10001,
                              1e300,
                              16777217.0}) {
        values.emplace_back(each);
    }
    for (const float each : {0.0f, 0.1f, 1.0f / 3, 1.5f, 2.5f, 1e6f, 1e7f, 9999999.0f, 12345678.0f, 1e-4f, 1e-5f,
                             16777216.0f, 3.4028235e38f, 1e-45f, -1234.5678f, 1000000.5f, 999999.95f, 8388608.5f}) {
        values.emplace_back(each);
    }
    for (const std::int64_t each :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, std::int64_t{99900}, std::int64_t{12345},
          std::int64_t{15000}, std::int64_t{25000}, std::int64_t{-25000}, std::int64_t{-15000}, std::int64_t{25001},
          std::int64_t{10005000}, std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        values.emplace_back(Currency{each});
    }
    for (const Decimal each :
         {Decimal{}, Decimal{0, 125, 1, false}, Decimal{0, 125, 2, true}, Decimal{0, 1500, 3, false},
          Decimal{0, 25, 1, false}, Decimal{0, 35, 1, true}, Decimal{0, 0, 4, true}, Decimal{0, 1, 28, false},
          Decimal{0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 0, false}, Decimal{0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 28, true},
          Decimal{0, 10000500, 5, false}, Decimal{5, 123456789, 10, false}}) {
        values.emplace_back(each);
    }
    return values;
}

std::vector<Variant> dates() {
    std::vector<Variant> values;
    for (const double each : {0.0,          0.10001,   1.0,     -1.0,         0.5,           0.25,
                              -0.25,        1.5,       -1.25,   -1.75,        38051.0,       38051.588298611,
                              38051.999999, 36526.0,   2.0 / 3, 2958465.0,    2958465.99998, 2958465.999999,
                              -657434.0,    -657434.5, 25569.0, 45000.123456, 0.000005787,   60.0,
                              59.0}) {
        values.emplace_back(Date{each});
    }
    return values;
}

std::vector<Variant> texts(std::initializer_list<const char16_t*> all) {
    std::vector<Variant> values;
    for (const auto* each : all) values.emplace_back(each);
    return values;
}

std::vector<Variant> numberTexts() {
    return texts({u"",
                  u" ",
                  u"0",
                  u"-0",
                  u"12",
                  u" 12 ",
                  u"\t12\r\n",
                  u"+12",
                  u"-12",
                  u"12-",
                  u"12+",
                  u"- 12",
                  u"12 -",
                  u"--12",
                  u"-12-",
                  u"+-12",
                  u"(12)",
                  u"( 12 )",
                  u"(-12)",
                  u"-(12)",
                  u"(12",
                  u"12)",
                  u"$12",
                  u"$ 12",
                  u"-$12",
                  u"$-12",
                  u"12$",
                  u"12 $",
                  u"($12)",
                  u"$(12)",
                  u"$$12",
                  u"1,234",
                  u"1,2,3",
                  u",123",
                  u"123,",
                  u"1.5,0",
                  u"1,234.5",
                  u"1,.5",
                  u".5",
                  u"5.",
                  u".",
                  u"-.5",
                  u"1.2.3",
                  u"1e5",
                  u"1E5",
                  u"1e+5",
                  u"1e-5",
                  u"1e",
                  u"1e+",
                  u"e5",
                  u"1.e5",
                  u".5e1",
                  u"1d5",
                  u"1 e5",
                  u"1e 5",
                  u"1e400",
                  u"1e-400",
                  u"1e308",
                  u"1.8e308",
                  u"1e39",
                  u"1e99999999999",
                  u"0e99999999999",
                  u"1e5.5",
                  u"12 34",
                  u"abc",
                  u"12abc",
                  u"&H10",
                  u"&h1F",
                  u"&HFFFF",
                  u"&H8000",
                  u"&H7FFF",
                  u"&HFFFFFFFF",
                  u"&H80000000",
                  u"&H7FFFFFFF",
                  u"&H100000000",
                  u"&HFFFFF",
                  u"&H",
                  u"&HG",
                  u"&O17",
                  u"&o17",
                  u"&O177777",
                  u"&O8",
                  u"&O37777777777",
                  u"&17",
                  u"-&H10",
                  u"&H10&",
                  u" &H10 ",
                  u"&H-10",
                  u"&H1.5",
                  u"&H0000000000FF",
                  u"&HFF",
                  u"&H80",
                  u"0x10",
                  u"10%",
                  u"True",
                  u"false",
                  u"TRUE",
                  u" True",
                  u"#TRUE#",
                  u"#False#",
                  u"yes",
                  u"t",
                  u"2147483647",
                  u"2147483648",
                  u"-2147483648",
                  u"-2147483649",
                  u"2147483647.4",
                  u"2147483647.5",
                  u"32767.5",
                  u"32767.4",
                  u"0.5",
                  u"1.5",
                  u"2.5",
                  u"-2.5",
                  u"0.49999999999999999999",
                  u"2.50000000000000000000000001",
                  u"123456789012345678",
                  u"1234567890123456789012345678901234567890",
                  u"0.1234567890123456789012345678901234567890",
                  u"79228162514264337593543950335",
                  u"79228162514264337593543950336",
                  u"79228162514264337593543950335.4",
                  u"7.9228162514264337593543950335",
                  u"7.9228162514264337593543950336",
                  u"1.50",
                  u"0.00005",
                  u"0.00015",
                  u"0.00025",
                  u"1.00005",
                  u"1.00015",
                  u"922337203685477.5807",
                  u"922337203685477.5808",
                  u"-922337203685477.5808",
                  u"922337203685477.58074",
                  u"0.00000000000000000000000000015",
                  u"0.0000000000000000000000000001",
                  u"1e-28",
                  u"1e-29",
                  u"1e28",
                  u"1e29",
                  u"\u00A012",
                  u"\u06612",
                  u"3.4028235e38",
                  u"3.5e38",
                  u"1e-46",
                  u"9999999999999999",
                  u"0.3",
                  u"00012",
                  u"1.7976931348623157e308",
                  u"4.9e-324"});
}

std::vector<Variant> dateTexts() {
    return texts({u"3/5/2004",
                  u"03/05/2004",
                  u"3-5-2004",
                  u"3.5.2004",
                  u"3 5 2004",
                  u"3,5,2004",
                  u"3/5/04",
                  u"3/5/29",
                  u"3/5/30",
                  u"3/5/99",
                  u"3/5/00",
                  u"13/5/2004",
                  u"5/13/2004",
                  u"13/13/2004",
                  u"2004/3/5",
                  u"2004/13/5",
                  u"2004-03-05",
                  u"2004-3-5",
                  u"2004-13-05",
                  u"32/1/5",
                  u"1/2/3",
                  u"0/1/2004",
                  u"1/0/2004",
                  u"2/29/2004",
                  u"2/29/2003",
                  u"2/30/2004",
                  u"31/4/2004",
                  u"4/31/2004",
                  u"5 Mar 2004",
                  u"5 March 2004",
                  u"5-Mar-2004",
                  u"5/Mar/2004",
                  u"5Mar2004",
                  u"5 mar 04",
                  u"Mar 5 2004",
                  u"Mar 5, 2004",
                  u"March 5, 2004",
                  u"March 5,2004",
                  u"Mar 5",
                  u"5 Mar",
                  u"Mar 2004",
                  u"March, 2004",
                  u"Mar",
                  u"2004 Mar 5",
                  u"2004 5 Mar",
                  u"Sept 5 2004",
                  u"Sep 5 2004",
                  u"Mar. 5, 2004",
                  u"Marc 5 2004",
                  u"5 Mar Apr 2004",
                  u"31 Apr 2004",
                  u"Monday",
                  u"Friday, March 5, 2004",
                  u"Friday March 5, 2004",
                  u"Fri 5 Mar 2004",
                  u"Fri, 5 Mar 2004",
                  u"Mon 5 Mar 2004",
                  u"March 5, 2004 Friday",
                  u"14:07",
                  u"14:07:09",
                  u"2:07 PM",
                  u"2:07:09 PM",
                  u"2:07:09PM",
                  u"2:07pm",
                  u"2 PM",
                  u"2PM",
                  u"2 p",
                  u"12 AM",
                  u"12 PM",
                  u"12:30 AM",
                  u"12:30 PM",
                  u"0:30 PM",
                  u"0:30 AM",
                  u"13:00 AM",
                  u"13:00 PM",
                  u"14:07:09 PM",
                  u"24:00",
                  u"23:59:59",
                  u"23:60",
                  u"1:2:60",
                  u"1:2:3:4",
                  u"1:2:3.5",
                  u"1:",
                  u":30",
                  u"14.07",
                  u"14.07.09",
                  u"1:5",
                  u"001:30",
                  u"1:030",
                  u"3/5/2004 14:07",
                  u"3/5/2004 2:07:09 PM",
                  u"14:07 3/5/2004",
                  u"2 PM 3/5/2004",
                  u"5 Mar 2004 2:07:09 PM",
                  u"5 Mar 2004 14:07",
                  u"5 Mar 2004, 14:07",
                  u"5 Mar 2004 14",
                  u"5 Mar 2004 2 PM",
                  u"March 5, 2004 2:07 PM",
                  u"5 Mar 14:07 2004",
                  u"2004-03-05 14:07:09",
                  u"2004-03-05T14:07:09",
                  u"3/5/2004  14:07",
                  u" 3/5/2004 ",
                  u"3 / 5 / 2004",
                  u"3/5",
                  u"3-5",
                  u"3.5",
                  u"13/5",
                  u"5/13",
                  u"13/13",
                  u"5/2004",
                  u"2004/5",
                  u"3/32",
                  u"32/3",
                  u"3 5",
                  u"1/1",
                  u"3/5/",
                  u"/3/5",
                  u"3/-5/2004",
                  u"3/5/2004/6",
                  u"3/5/2004 6",
                  u"3/5/99999",
                  u"3/5/10000",
                  u"3/5/9999",
                  u"3/5/100",
                  u"3/5/99 ",
                  u"3/5/0100",
                  u"3/5/0",
                  u"3/5/000",
                  u"3/5/050",
                  u"12/31/9999 23:59:59",
                  u"1/1/100",
                  u"12/29/1899",
                  u"12/30/1899",
                  u"12/29/1899 6:00",
                  u"12/31/1899 6:00",
                  u"12",
                  u"38051",
                  u"38051.5",
                  u"-1",
                  u"1e5",
                  u"20040305",
                  u"abc",
                  u"x 3/5/2004",
                  u"3/5/2004 x",
                  u"AM",
                  u"PM 2",
                  u"2 AM PM",
                  u"#3/5/2004#",
                  u"today",
                  u"Jan 1",
                  u"May 2004",
                  u"may 5 2004",
                  u"MAY 5, 2004",
                  u"May-04",
                  u"May 04",
                  u"May 32",
                  u"32 May",
                  u"4-May",
                  u"2004-May",
                  u"May/5/04",
                  u"1 January 2000 AD",
                  u"1st May 2004",
                  u"5 Mar 2004\n",
                  u"5\tMar\t2004",
                  u"5\u00A0Mar 2004",
                  u"3/5/2004\r\n"});
}

struct Known {
    const char* source;
    const char* target;
    const char* portable;
    const char* platform;
};

const Known kKnown[] = {
#include "KnownDifferences.inc"
    {"", "", "", ""},
};

const Known* knownDifference(const std::string& source, const std::string& target) {
    for (const Known& each : kKnown) {
        if (source == each.source && target == each.target) return &each;
    }
    return nullptr;
}

struct Group {
    const char* name;
    std::vector<Variant> (*values)();
};

void PrintTo(const Group& group, std::ostream* stream) {
    *stream << group.name;
}

class Win32Conversions : public testing::TestWithParam<Group> {
protected:
    void SetUp() override {
        if (GetUserDefaultLCID() != MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT)) {
            GTEST_SKIP() << "the user's locale is not en-US";
        }
        platform::installConversions();
    }
    void TearDown() override { installPlatformConversions(nullptr); }
};

void check(const std::string& source, const std::string& target, const std::string& portableResult,
           const std::string& platformResult) {
    const Known* const known = knownDifference(source, target);
    if (known == nullptr) {
        EXPECT_EQ(portableResult, platformResult) << "{R\"~(" << source << ")~\", \"" << target << "\", \""
                                                  << portableResult << "\", \"" << platformResult << "\"},";
        return;
    }
    EXPECT_EQ(portableResult, known->portable) << source << " -> " << target << ", portable";
    EXPECT_EQ(platformResult, known->platform) << source << " -> " << target << ", the platform's";
}

TEST_P(Win32Conversions, AgreeWithThePlatforms) {
    for (const Variant& value : GetParam().values()) {
        for (const Target& target : kTargets) {
            if (value.type() == target.type) continue;
            check(label(value), target.name, showResult(target.portableForm(value)),
                  showResult(platformConversions()->convert(value, target.type)));
        }
    }
}

TEST_P(Win32Conversions, AgreeOnEquality) {
    const std::vector<Variant> others{Variant(),
                                      Variant(u""),
                                      Variant(u"0"),
                                      Variant(u"12"),
                                      Variant(0.0),
                                      Variant(std::int32_t{12}),
                                      Variant(std::int16_t{-1}),
                                      Variant(true),
                                      Variant(false),
                                      Variant(0.1f),
                                      Variant(0.1),
                                      Variant(Currency{15000}),
                                      Variant(Decimal{0, 15, 1, false}),
                                      Variant(Date{1.5}),
                                      Variant(u"True"),
                                      Variant(u"true"),
                                      Variant(Date{0.1}),
                                      Variant(Currency{1000}),
                                      Variant(16777216.0f),
                                      Variant(Decimal{0, 1, 1, false})};
    for (const Variant& left : GetParam().values()) {
        for (const Variant& right : others) {
            const auto portableResult = portable::equalValues(left, right);
            const auto platformResult = platformConversions()->equal(left, right);
            const auto text = [](std::optional<bool> result) {
                return result ? (*result ? "equal" : "different") : "-";
            };
            check(label(left), "= " + label(right), text(portableResult), text(platformResult));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Win32Conversions,
                         testing::Values(Group{"Numbers", numbers}, Group{"Dates", dates},
                                         Group{"NumberTexts", numberTexts}, Group{"DateTexts", dateTexts}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
