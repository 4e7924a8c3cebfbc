#include "automation/Convert.h"

#include <gtest/gtest.h>

#include <limits>

#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::automation {
namespace {

const auto kNo = std::nullopt;

// An object whose default member gives a value; one without gives error 438.
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

struct LongCase {
    Variant value;
    std::optional<std::int32_t> result;
};

TEST(Convert, ToLongRoundsHalfToEven) {
    // clang-format off
    const LongCase cases[] = {
        {Variant(), 0}, {true, -1}, {std::uint8_t{200}, 200}, {std::int16_t{-5}, -5}, {0.5, 0}, {1.5, 2}, {2.5, 2},
        {-0.5, 0}, {-1.5, -2}, {2147483647.4, 2147483647}, {2147483647.5, kNo},
        {-2147483648.5, std::numeric_limits<std::int32_t>::min()}, {-2147483649.0, kNo}, {1e300, kNo},
        {Variant(std::numeric_limits<double>::quiet_NaN()), kNo}, {2.5f, 2}, {Currency{25000}, 2},
        {Currency{-15000}, -2}, {Currency{25001}, 3}, {Decimal{0, 35, 1, true}, -4}, {Date{38051.5}, 38052},
        {u"2.5", 2}, {u"2.50000000000000000000000000001", 3}, {u" (12) ", -12}, {u"&HFFFFFFFF", -1},
        {u"2147483648", kNo}, {u"abc", kNo}, {u"True", kNo}, {Null{}, kNo}, {ErrorCode{5}, kNo},
        {Variant::missing(), kNo}, {ObjectRef(), kNo}, {Variant(std::make_shared<const Array>()), kNo},
        {holder(7.0), 7}, {holder(holder(u"8")), 8}, {holder(kNo), kNo},
    };
    // clang-format on
    for (const auto& each : cases) {
        EXPECT_EQ(toLong(each.value), each.result) << toUtf8(typeNameOf(each.value)) << &each - cases;
    }
}

TEST(Convert, ToIntegerTakesSixteenBitsOfHexadecimal) {
    EXPECT_EQ(toInteger(32767.4), 32767);
    EXPECT_EQ(toInteger(32767.5), kNo);
    EXPECT_EQ(toInteger(-32769), kNo);
    EXPECT_EQ(toInteger(u"&HFFFF"), -1);
    EXPECT_EQ(toInteger(u"&H10000"), kNo);
    EXPECT_EQ(toLong(u"&HFFFF"), 65535);
}

TEST(Convert, ToSingleAndDouble) {
    EXPECT_EQ(toSingle(0.1), 0.1f);
    EXPECT_EQ(toSingle(3.5e38), kNo);
    EXPECT_EQ(toSingle(u"3.4028235e38"), std::numeric_limits<float>::max());
    EXPECT_EQ(toDouble(Currency{12345}), 1.2345);
    EXPECT_EQ(toDouble(Decimal{0, 1, 1, true}), -0.1);
    EXPECT_EQ(toDouble(Date{1.25}), 1.25);
    EXPECT_EQ(toDouble(u"1e400"), kNo);
}

TEST(Convert, ToBooleanAndBack) {
    for (const auto* word : {u"True", u"TRUE", u"#true#", u"1", u"-0.5"}) EXPECT_EQ(toBoolean(Variant(word)), true);
    for (const auto* word : {u"False", u"false", u"0", u"0.0"}) EXPECT_EQ(toBoolean(Variant(word)), false);
    for (const auto* word : {u"yes", u"", u"t", u" True"}) EXPECT_EQ(toBoolean(Variant(word)), kNo);
    EXPECT_EQ(toBoolean(0.1), true);
    EXPECT_EQ(toBoolean(Variant()), false);
}

TEST(Convert, ToCurrencyRoundsHalfToEvenAtFourDecimals) {
    EXPECT_EQ(toCurrency(u"1.00005"), Currency{10000});
    EXPECT_EQ(toCurrency(u"1.00015"), Currency{10002});
    EXPECT_EQ(toCurrency(100000000000000.5), Currency{1000000000000005000});
    EXPECT_EQ(toCurrency(Variant(std::int32_t{-2147483647 - 1})), Currency{-21474836480000});
    EXPECT_EQ(toCurrency(1e15), kNo);
    EXPECT_EQ(toCurrency(u"922337203685477.5807"), Currency{std::numeric_limits<std::int64_t>::max()});
    EXPECT_EQ(toCurrency(u"922337203685477.5808"), kNo);
    EXPECT_EQ(toCurrency(true), Currency{-10000});
}

TEST(Convert, ToDecimalTakesTheDigitsThatAreShown) {
    EXPECT_EQ(toText(Variant(*toDecimal(0.1))), u"0.1");
    EXPECT_EQ(toText(Variant(*toDecimal(0.1f))), u"0.1");
    EXPECT_EQ(toText(Variant(*toDecimal(Currency{-5}))), u"-0.0005");
    EXPECT_EQ(toText(Variant(*toDecimal(u"&HFFFFFFFF"))), u"-1");
    EXPECT_EQ(toDecimal(1e29), kNo);
}

TEST(Convert, ToText) {
    // clang-format off
    const std::pair<Variant, std::optional<std::u16string>> cases[] = {
        {Variant(), u""}, {std::uint8_t{255}, u"255"}, {Date{38051.5}, u"3/5/2004 12:00:00 PM"},
        {true, u"True"}, {holder(u"x"), u"x"}, {Null{}, kNo}, {ErrorCode{13}, kNo}, {ObjectRef(), kNo}};
    // clang-format on
    for (const auto& [value, text] : cases) EXPECT_EQ(toText(value), text) << toUtf8(typeNameOf(value));
}

TEST(Convert, NumbersBecomeDatesWithinTheCalendar) {
    EXPECT_EQ(toDate(38051.5), Date{38051.5});
    EXPECT_EQ(toDate(-657434), Date{-657434});
    EXPECT_EQ(toDate(2958466.0), kNo);
    EXPECT_EQ(toDate(-657435.0), kNo);
    EXPECT_EQ(toDate(u"38051"), kNo);  // no date text
}

TEST(Convert, IsNumeric) {
    const Variant numeric[] = {Variant(), true, 1.5f, Currency{}, Decimal{}, u"$1,000", u"&HFF", holder(u"1")};
    const Variant others[] = {Null{}, Date{1}, u"", u"x", ErrorCode{}, ObjectRef(), std::make_shared<const Array>()};
    for (const Variant& value : numeric) EXPECT_TRUE(isNumeric(value)) << toUtf8(typeNameOf(value));
    for (const Variant& value : others) EXPECT_FALSE(isNumeric(value)) << toUtf8(typeNameOf(value));
}

TEST(Convert, Truth) {
    const Variant kTrue[] = {u"true", u"YES",  u"y",   u"T", u"On",       u" yes ",
                             u"1",    u"-0.5", u"&H1", true, Currency{1}, holder(u"on")};
    const Variant kFalse[] = {u"", u"false", u"no", u"off", u"0", u"yess", u"tr", 0.0, Null{}, ObjectRef()};
    for (const Variant& value : kTrue) EXPECT_TRUE(truth(value)) << &value - kTrue;
    for (const Variant& value : kFalse) EXPECT_FALSE(truth(value)) << &value - kFalse;
}

TEST(Convert, TypeNames) {
    auto array = std::make_shared<Array>();
    array->elementType = VariantType::string;
    EXPECT_EQ(typeNameOf(ObjectRef()), u"Nothing");
    EXPECT_EQ(typeNameOf(holder(kNo)), u"Holder");
    EXPECT_EQ(typeNameOf(Variant(std::shared_ptr<const Array>(array))), u"String()");
    EXPECT_EQ(Variant(std::shared_ptr<const Array>(array)).typeCode(), 8192 + 8);
    EXPECT_EQ(typeNameOf(1), u"Long");
    EXPECT_EQ(Variant(1).typeCode(), 3);
    EXPECT_EQ(Variant(ObjectRef()).typeCode(), 9);
    EXPECT_EQ(Variant(DataObject{}).typeCode(), 13);
}

struct EqualCase {
    Variant left;
    Variant right;
    std::optional<bool> result;
};

TEST(Convert, Equality) {
    // clang-format off
    const EqualCase cases[] = {
        {5, 5.0, true}, {true, std::int16_t{-1}, true}, {true, std::int16_t{1}, false}, {Variant(), 0, true},
        {Variant(), u"", true}, {Variant(), Variant(), true}, {u"a", u"a", true}, {u"a", u"A", false},
        {u"5", 5, false},  // a text is no number
        {0.1f, 0.1, true}, {Currency{1000}, 0.10001, false},
        {Currency{922337203685477580}, Currency{922337203685477581}, false}, {Decimal{0, 15, 1, false}, 1.5, true},
        {Decimal{0, 1, 28, false}, Variant(), false}, {Decimal{}, 1e300, false}, {Date{1.5}, 1.5, true},
        {Null{}, Null{}, false}, {ErrorCode{5}, ErrorCode{5}, true}, {ErrorCode{5}, 5, kNo}, {ObjectRef(), 5, kNo},
        {holder(u"a"), u"a", true},
    };
    // clang-format on
    for (const auto& each : cases) {
        EXPECT_EQ(equalValues(each.left, each.right), each.result) << &each - cases;
        EXPECT_EQ(equalValues(each.right, each.left), each.result) << &each - cases << " turned round";
    }
}

TEST(Convert, AChainOfDefaultValuesEnds) {
    Variant chain(u"1");
    for (int level = 0; level < 1000; ++level) chain = holder(chain);
    EXPECT_EQ(toLong(chain), kNo);
}

}  // namespace
}  // namespace velmor::automation
