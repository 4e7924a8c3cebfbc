#include "automation/Convert.h"

#include <gtest/gtest.h>

#include <limits>

#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::automation {
namespace {

// An object whose default member gives a value, or error 438 without a value.
class Holder : public Object {
public:
    explicit Holder(std::optional<Variant> value) : value_(std::move(value)) {}
    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant>) override {
        if (!name.empty() || !value_) throw Error(438, u"test", u"no such member");
        return *value_;
    }
    std::u16string typeName() const override { return u"Holder"; }

private:
    std::optional<Variant> value_;
};

Variant holder(std::optional<Variant> value) {
    return Variant(std::make_shared<Holder>(std::move(value)));
}

const Variant someArray = Array{}, nothing = ObjectRef();
constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();

// The result of a conversion as text; "-" if it fails.
template <typename Result>
std::string shown(const std::optional<Result>& result) {
    return result ? toUtf8(toText(Variant(*result)).value()) : "-";
}

template <typename Conversion>
void check(Conversion convert, std::initializer_list<std::pair<Variant, const char*>> cases) {
    for (const auto& [value, result] : cases) {
        EXPECT_EQ(shown(std::optional(convert(value))), result)
            << &value - &cases.begin()->first << toUtf8(typeNameOf(value));
    }
}

// clang-format off
TEST(Convert, ToWholeNumbersRoundsHalfToEven) {
    check(toLong, {
        {Variant(), "0"}, {true, "-1"}, {std::uint8_t{200}, "200"}, {std::int16_t{-5}, "-5"}, {0.5, "0"}, {1.5, "2"},
        {2.5, "2"}, {-0.5, "0"}, {-1.5, "-2"}, {2147483647.4, "2147483647"}, {2147483647.5, "-"},
        {-2147483648.5, "-2147483648"}, {-2147483649.0, "-"}, {1e300, "-"}, {notANumber, "-"}, {2.5f, "2"},
        {Currency{25000}, "2"}, {Currency{-15000}, "-2"}, {Currency{25001}, "3"}, {Decimal{0, 35, 1, true}, "-4"},
        {Date{38051.5}, "38052"}, {u"2.5", "2"}, {u"2.50000000000000000000000000001", "3"}, {u" (12) ", "-12"},
        {u"&HFFFFFFFF", "-1"}, {u"&HFFFF", "65535"}, {u"2147483648", "-"}, {u"abc", "-"}, {u"True", "-"}, {Null{}, "-"},
        {ErrorCode{5}, "-"}, {Variant::missing(), "-"}, {nothing, "-"}, {someArray, "-"}, {holder(7.0), "7"},
        {holder(holder(u"8")), "8"}, {holder({}), "-"}});
    check(toInteger, {{32767.4, "32767"}, {32767.5, "-"}, {-32769, "-"}, {u"&HFFFF", "-1"}, {u"&H10000", "-"}});
}

TEST(Convert, ToEveryOtherType) {
    check(toSingle, {{0.1, "0.1"}, {3.5e38, "-"}, {u"3.4028235e38", "3.402823E+38"}});
    check(toDouble, {{Currency{12345}, "1.2345"}, {Decimal{0, 1, 1, true}, "-0.1"}, {Date{1.25}, "1.25"}, {u"1e400", "-"}});
    check(toBoolean, {
        {u"True", "True"}, {u"TRUE", "True"}, {u"#true#", "True"}, {u"-0.5", "True"}, {0.1, "True"}, {u"false", "False"},
        {u"0.0", "False"}, {Variant(), "False"}, {u"yes", "-"}, {u"", "-"}, {u"t", "-"}, {u" True", "-"}});
    check(toCurrency, {
        {u"1.00005", "1"}, {u"1.00015", "1.0002"}, {100000000000000.5, "100000000000000.5"}, {1e15, "-"}, {true, "-1"},
        {u"922337203685477.5807", "922337203685477.5807"}, {u"922337203685477.5808", "-"}});
    check(toDecimal, {{0.1, "0.1"}, {0.1f, "0.1"}, {Currency{-5}, "-0.0005"}, {u"&HFFFFFFFF", "-1"}, {1e29, "-"}});
    check(toDate, {
        {38051.5, "3/5/2004 12:00:00 PM"}, {-657434, "1/1/100"}, {2958466.0, "-"}, {-657435.0, "-"},
        {u"38051", "-"}});  // a text converts only if it is a date
    check(toText, {
        {Variant(), ""}, {std::uint8_t{255}, "255"}, {Date{38051.5}, "3/5/2004 12:00:00 PM"}, {true, "True"},
        {holder(u"x"), "x"}, {Null{}, "-"}, {ErrorCode{13}, "-"}, {nothing, "-"}});
}

TEST(Convert, RecognisesTruthValues) {
    for (const auto* word : {u"true", u"YES", u"y", u"T", u"On", u" yes ", u"1", u"-0.5", u"&H1"}) EXPECT_TRUE(truth(word));
    for (const auto* word : {u"", u"false", u"no", u"off", u"0", u"yess", u"tr"}) EXPECT_FALSE(truth(word));
    check(truth, {{true, "True"}, {Currency{1}, "True"}, {holder(u"on"), "True"}, {0.0, "False"}, {Null{}, "False"},
        {nothing, "False"}});
}

TEST(Convert, NamesTypes) {
    const Variant array = Array{VariantType::string, nullptr};
    check(typeNameOf, {{nothing, "Nothing"}, {holder({}), "Holder"}, {array, "String()"}, {1, "Long"}});
    for (const auto& [value, code] : {std::pair(array, 8192 + 8), {Variant(1), 3}, {nothing, 9}, {DataObject{}, 13}}) {
        EXPECT_EQ(value.typeCode(), code);
    }
}

TEST(Convert, ComparesValues) {
    const struct {
        Variant left, right;
        std::optional<bool> equal;
    } cases[] = {
        {5, 5.0, true}, {true, std::int16_t{-1}, true}, {true, std::int16_t{1}, false}, {Variant(), 0, true},
        {Variant(), u"", true}, {Variant(), Variant(), true}, {u"a", u"a", true}, {u"a", u"A", false},
        {u"5", 5, false},  // a text is not a number
        {0.1f, 0.1, true}, {Currency{1000}, 0.10001, false}, {Decimal{0, 15, 1, false}, 1.5, true},
        {Currency{922337203685477580}, Currency{922337203685477581}, false}, {Decimal{}, 1e300, false},
        {Decimal{0, 1, 28, false}, Variant(), false}, {Date{1.5}, 1.5, true}, {Null{}, Null{}, false},
        {ErrorCode{5}, ErrorCode{5}, true}, {ErrorCode{5}, 5, {}}, {nothing, 5, {}}, {holder(u"a"), u"a", true}};
    for (const auto& row : cases) {
        EXPECT_EQ(equalValues(row.left, row.right), row.equal) << &row - cases;
        EXPECT_EQ(equalValues(row.right, row.left), row.equal) << &row - cases << " turned round";
    }
}
// clang-format on

TEST(Convert, AChainOfDefaultValuesEnds) {
    Variant chain(u"1");
    for (int level = 0; level < 1000; ++level) chain = holder(chain);
    EXPECT_EQ(toLong(chain), std::nullopt);
}

}  // namespace
}  // namespace velmor::automation
