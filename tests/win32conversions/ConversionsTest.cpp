// Holds the portable conversions against the platform's own, over every pair of a value and a
// target type. Where the two differ on purpose, KnownDifferences.inc says what each gives.
#include <gtest/gtest.h>

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
                         [](const auto& each) { return each.param.name; });

}  // namespace
