// Compares the portable conversions with the platform's, for every pair of a value and a target type.
// KnownDifferences.inc lists the deliberate differences.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "automation/Convert.h"
#include "automation/PlatformConversions.h"
#include "automation/Portable.h"
#include "platform/win32/Conversions.h"
#include "platform/win32/Windows.h"
#include "text/Encoding.h"
#include "win32conversions/Values.h"

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

struct Known {
    const char *source, *target, *portable, *platform;
};

const Known kKnown[] = {
#include "KnownDifferences.inc"
    {"", "", "", ""},
};

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
    const Known* const known = std::find_if(std::begin(kKnown), std::end(kKnown) - 1, [&](const Known& each) {
        return source == each.source && target == each.target;
    });
    if (known == std::end(kKnown) - 1) {
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
            const auto portableForm = target.portableForm(value);
            const auto platformForm = platformConversions()->convert(value, target.type);
            check(label(value), target.name, portableForm ? show(*portableForm) : "-",
                  platformForm ? show(*platformForm) : "-");
        }
    }
}

TEST_P(Win32Conversions, AgreeOnEquality) {
    // clang-format off
    const Variant others[] = {
        Variant(), u"", u"0", u"12", u"True", u"true", 0.0, 0.1, 0.1f, 16777216.0f, 12, std::int16_t{-1}, true, false,
        Currency{1000}, Currency{15000}, Decimal{0, 1, 1, false}, Decimal{0, 15, 1, false}, Date{0.1}, Date{1.5}};
    // clang-format on
    const auto said = [](std::optional<bool> result) { return !result ? "-" : *result ? "equal" : "different"; };
    for (const Variant& left : GetParam().values()) {
        for (const Variant& right : others) {
            check(label(left), "= " + label(right), said(portable::equalValues(left, right)),
                  said(platformConversions()->equal(left, right)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Win32Conversions,
                         testing::Values(Group{"Numbers", numbers}, Group{"Dates", dates},
                                         Group{"NumberTexts", numberTexts}, Group{"DateTexts", dateTexts}),
                         [](const auto& each) { return each.param.name; });

}  // namespace
