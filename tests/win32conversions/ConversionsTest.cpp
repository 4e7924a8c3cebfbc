// The portable conversions and the platform's agree, for every pair of a value and a target type. (They differ on
// purpose where the platform loses digits or accepts malformed texts; those values are not here.)
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

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
    VariantType type;
    std::optional<Variant> (*portableForm)(const Variant&);
};

template <auto convert>
std::optional<Variant> boxed(const Variant& value) {
    const auto converted = convert(value);
    return converted ? std::optional(Variant(*converted)) : std::nullopt;
}

// clang-format off
const Target targets[] = {
    {VariantType::integer, boxed<portable::toInteger>}, {VariantType::longInteger, boxed<portable::toLong>},
    {VariantType::single, boxed<portable::toSingle>}, {VariantType::doubleFloat, boxed<portable::toDouble>},
    {VariantType::boolean, boxed<portable::toBoolean>}, {VariantType::currency, boxed<portable::toCurrency>},
    {VariantType::decimal, boxed<portable::toDecimal>}, {VariantType::date, boxed<portable::toDate>},
    {VariantType::string, boxed<portable::toText>}};

const Variant valueRows[] = {
    Variant(), false, std::uint8_t{255}, std::int16_t{-32768}, 2147483647, 0.5, 1.5, 2.5, -0.5, 0.1 + 0.2, 32767.5,
    2147483647.5, -2147483649.0, 1e15, 0.00001, 1e100, 922337203685478.0, 38051.588298611, 2958466.0, -657435.0, 0.1f,
    1e6f, Currency{15000}, Currency{25001}, Decimal{0, 125, 1, false}, Decimal{0, 35, 1, true}, Date{38051.5},
    Date{-1.25}, Date{-657434}, u"", u" 12 ", u"(12)", u"$-12", u"1,234.5", u"1e-5", u"1e400", u"abc", u"True", u"#TRUE#",
    u"2147483647.5", u"2.50000000000000000000000001", u"79228162514264337593543950336", u"3/5/2004", u"13/5/2004",
    u"2/29/2003", u"5 Mar 2004 2:07:09 PM", u"Friday, March 5, 2004", u"14:07", u"24:00"};

const Variant others[] = {
    Variant(), u"12", 0.1, 12, std::int16_t{-1}, true, Currency{15000}, Decimal{0, 15, 1, false}, Date{1.5}};
// clang-format on

std::string shown(const std::optional<Variant>& value) {
    if (!value) return "-";
    const auto* number = value->get<double>();
    if (const auto* date = value->get<Date>()) number = &date->days;
    if (number == nullptr) return toUtf8(portable::toText(*value).value_or(typeNameOf(*value)));
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", *number);
    return text;
}

std::string shown(std::optional<bool> equal) {
    return !equal ? "-" : *equal ? "equal" : "different";
}

TEST(Win32Conversions, AgreeWithThePlatforms) {
    if (GetUserDefaultLCID() != MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT)) {
        GTEST_SKIP() << "the user's locale is not en-US";
    }
    platform::installConversions();
    for (const Variant& value : valueRows) {
        SCOPED_TRACE(toUtf8(typeNameOf(value)) + " " + shown(std::optional(value)));
        for (const Target& target : targets) {
            if (value.type() == target.type) continue;
            EXPECT_EQ(shown(target.portableForm(value)), shown(platformConversions()->convert(value, target.type)))
                << static_cast<int>(target.type);
        }
        for (const Variant& other : others) {
            EXPECT_EQ(shown(portable::equalValues(value, other)), shown(platformConversions()->equal(value, other)))
                << shown(std::optional(other));
        }
    }
    installPlatformConversions(nullptr);
}

}  // namespace
