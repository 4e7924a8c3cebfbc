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
    const LongCase cases[] = {
        {Variant(), 0},
        {Variant(true), -1},
        {Variant(std::uint8_t{200}), 200},
        {Variant(std::int16_t{-5}), -5},
        {Variant(0.5), 0},
        {Variant(1.5), 2},
        {Variant(2.5), 2},
        {Variant(-0.5), 0},
        {Variant(-1.5), -2},
        {Variant(2147483647.4), 2147483647},
        {Variant(2147483647.5), kNo},
        {Variant(-2147483648.5), std::numeric_limits<std::int32_t>::min()},
        {Variant(-2147483649.0), kNo},
        {Variant(1e300), kNo},
        {Variant(std::numeric_limits<double>::quiet_NaN()), kNo},
        {Variant(2.5f), 2},
        {Variant(Currency{25000}), 2},
        {Variant(Currency{-15000}), -2},
        {Variant(Currency{25001}), 3},
        {Variant(Decimal{0, 35, 1, true}), -4},
        {Variant(Date{38051.5}), 38052},
        {Variant(u"2.5"), 2},
        {Variant(u"2.50000000000000000000000000001"), 3},
        {Variant(u" (12) "), -12},
        {Variant(u"&HFFFFFFFF"), -1},
        {Variant(u"2147483648"), kNo},
        {Variant(u"abc"), kNo},
        {Variant(u"True"), kNo},
        {Variant(Null{}), kNo},
        {Variant(ErrorCode{5}), kNo},
        {Variant::missing(), kNo},
        {Variant(ObjectRef()), kNo},
        {Variant(std::make_shared<const Array>()), kNo},
        {holder(Variant(7.0)), 7},
        {holder(holder(Variant(u"8"))), 8},
        {holder(kNo), kNo},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(toLong(each.value), each.result) << toUtf8(typeNameOf(each.value)) << &each - cases;
    }
}

TEST(Convert, ToIntegerTakesSixteenBitsOfHexadecimal) {
    EXPECT_EQ(toInteger(Variant(32767.4)), 32767);
    EXPECT_EQ(toInteger(Variant(32767.5)), kNo);
    EXPECT_EQ(toInteger(Variant(std::int32_t{-32769})), kNo);
    EXPECT_EQ(toInteger(Variant(u"&HFFFF")), -1);
    EXPECT_EQ(toInteger(Variant(u"&H10000")), kNo);
    EXPECT_EQ(toLong(Variant(u"&HFFFF")), 65535);
}

TEST(Convert, ToSingleAndDouble) {
    EXPECT_EQ(toSingle(Variant(0.1)), 0.1f);
    EXPECT_EQ(toSingle(Variant(3.5e38)), kNo);
    EXPECT_EQ(toSingle(Variant(u"3.4028235e38")), std::numeric_limits<float>::max());
    EXPECT_EQ(toDouble(Variant(Currency{12345})), 1.2345);
    EXPECT_EQ(toDouble(Variant(Decimal{0, 1, 1, true})), -0.1);
    EXPECT_EQ(toDouble(Variant(Date{1.25})), 1.25);
    EXPECT_EQ(toDouble(Variant(u"1e400")), kNo);
}

TEST(Convert, ToBooleanAndBack) {
    for (const auto* word : {u"True", u"TRUE", u"#true#", u"1", u"-0.5"}) EXPECT_EQ(toBoolean(Variant(word)), true);
    for (const auto* word : {u"False", u"false", u"0", u"0.0"}) EXPECT_EQ(toBoolean(Variant(word)), false);
    for (const auto* word : {u"yes", u"", u"t", u" True"}) EXPECT_EQ(toBoolean(Variant(word)), kNo);
    EXPECT_EQ(toBoolean(Variant(0.1)), true);
    EXPECT_EQ(toBoolean(Variant()), false);
    EXPECT_EQ(toText(Variant(true)), u"True");
    EXPECT_EQ(toText(Variant(false)), u"False");
}

TEST(Convert, ToCurrencyRoundsHalfToEvenAtFourDecimals) {
    EXPECT_EQ(toCurrency(Variant(u"1.00005")), Currency{10000});
    EXPECT_EQ(toCurrency(Variant(u"1.00015")), Currency{10002});
    EXPECT_EQ(toCurrency(Variant(100000000000000.5)), Currency{1000000000000005000});
    EXPECT_EQ(toCurrency(Variant(std::int32_t{-2147483647 - 1})), Currency{-21474836480000});
    EXPECT_EQ(toCurrency(Variant(1e15)), kNo);
    EXPECT_EQ(toCurrency(Variant(u"922337203685477.5807")), Currency{std::numeric_limits<std::int64_t>::max()});
    EXPECT_EQ(toCurrency(Variant(u"922337203685477.5808")), kNo);
    EXPECT_EQ(toCurrency(Variant(true)), Currency{-10000});
}

TEST(Convert, ToDecimalTakesTheDigitsThatAreShown) {
    EXPECT_EQ(toText(Variant(*toDecimal(Variant(0.1)))), u"0.1");
    EXPECT_EQ(toText(Variant(*toDecimal(Variant(0.1f)))), u"0.1");
    EXPECT_EQ(toText(Variant(*toDecimal(Variant(Currency{-5})))), u"-0.0005");
    EXPECT_EQ(toText(Variant(*toDecimal(Variant(u"&HFFFFFFFF")))), u"-1");
    EXPECT_EQ(toDecimal(Variant(1e29)), kNo);
}

TEST(Convert, ToText) {
    EXPECT_EQ(toText(Variant()), u"");
    EXPECT_EQ(toText(Variant(std::uint8_t{255})), u"255");
    EXPECT_EQ(toText(Variant(Date{38051.5})), u"3/5/2004 12:00:00 PM");
    EXPECT_EQ(toText(Variant(Null{})), kNo);
    EXPECT_EQ(toText(Variant(ErrorCode{13})), kNo);
    EXPECT_EQ(toText(Variant(ObjectRef())), kNo);
    EXPECT_EQ(toText(holder(Variant(u"x"))), u"x");
}

TEST(Convert, NumbersBecomeDatesWithinTheCalendar) {
    EXPECT_EQ(toDate(Variant(38051.5)), Date{38051.5});
    EXPECT_EQ(toDate(Variant(std::int32_t{-657434})), Date{-657434});
    EXPECT_EQ(toDate(Variant(2958466.0)), kNo);
    EXPECT_EQ(toDate(Variant(-657435.0)), kNo);
    EXPECT_EQ(toDate(Variant(u"38051")), kNo);  // no date text
}

TEST(Convert, IsNumeric) {
    for (const Variant& value : {Variant(), Variant(true), Variant(1.5f), Variant(Currency{}), Variant(Decimal{}),
                                 Variant(u"$1,000"), Variant(u"&HFF"), holder(Variant(u"1"))}) {
        EXPECT_TRUE(isNumeric(value)) << toUtf8(typeNameOf(value));
    }
    for (const Variant& value : {Variant(Null{}), Variant(Date{1}), Variant(u""), Variant(u"x"), Variant(ErrorCode{}),
                                 Variant(ObjectRef()), Variant(std::make_shared<const Array>())}) {
        EXPECT_FALSE(isNumeric(value)) << toUtf8(typeNameOf(value));
    }
}

TEST(Convert, Truth) {
    for (const auto* word : {u"true", u"YES", u"y", u"T", u"On", u" yes ", u"1", u"-0.5", u"&H1"}) {
        EXPECT_TRUE(truth(Variant(word))) << toUtf8(word);
    }
    for (const auto* word : {u"", u"false", u"no", u"off", u"0", u"yess", u"tr"}) {
        EXPECT_FALSE(truth(Variant(word))) << toUtf8(word);
    }
    EXPECT_TRUE(truth(Variant(true)));
    EXPECT_TRUE(truth(Variant(Currency{1})));
    EXPECT_TRUE(truth(holder(Variant(u"on"))));
    EXPECT_FALSE(truth(Variant(0.0)));
    EXPECT_FALSE(truth(Variant(Null{})));
    EXPECT_FALSE(truth(Variant(ObjectRef())));
}

TEST(Convert, TypeNames) {
    auto array = std::make_shared<Array>();
    array->elementType = VariantType::string;
    EXPECT_EQ(typeNameOf(Variant(ObjectRef())), u"Nothing");
    EXPECT_EQ(typeNameOf(holder(kNo)), u"Holder");
    EXPECT_EQ(typeNameOf(Variant(std::shared_ptr<const Array>(array))), u"String()");
    EXPECT_EQ(Variant(std::shared_ptr<const Array>(array)).typeCode(), 8192 + 8);
    EXPECT_EQ(typeNameOf(Variant(std::int32_t{1})), u"Long");
    EXPECT_EQ(Variant(std::int32_t{1}).typeCode(), 3);
    EXPECT_EQ(Variant(ObjectRef()).typeCode(), 9);
    EXPECT_EQ(Variant(DataObject{}).typeCode(), 13);
}

struct EqualCase {
    Variant left;
    Variant right;
    std::optional<bool> result;
};

TEST(Convert, Equality) {
    const EqualCase cases[] = {
        {Variant(std::int32_t{5}), Variant(5.0), true},
        {Variant(true), Variant(std::int16_t{-1}), true},
        {Variant(true), Variant(std::int16_t{1}), false},
        {Variant(), Variant(std::int32_t{0}), true},
        {Variant(), Variant(u""), true},
        {Variant(), Variant(), true},
        {Variant(u"a"), Variant(u"a"), true},
        {Variant(u"a"), Variant(u"A"), false},
        {Variant(u"5"), Variant(std::int32_t{5}), false},  // a text is no number
        {Variant(0.1f), Variant(0.1), true},
        {Variant(Currency{1000}), Variant(0.10001), false},
        {Variant(Currency{922337203685477580}), Variant(Currency{922337203685477581}), false},
        {Variant(Decimal{0, 15, 1, false}), Variant(1.5), true},
        {Variant(Decimal{0, 1, 28, false}), Variant(), false},
        {Variant(Decimal{}), Variant(1e300), false},
        {Variant(Date{1.5}), Variant(1.5), true},
        {Variant(Null{}), Variant(Null{}), false},
        {Variant(ErrorCode{5}), Variant(ErrorCode{5}), true},
        {Variant(ErrorCode{5}), Variant(std::int32_t{5}), kNo},
        {Variant(ObjectRef()), Variant(std::int32_t{5}), kNo},
        {holder(Variant(u"a")), Variant(u"a"), true},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(equalValues(each.left, each.right), each.result) << &each - cases;
        EXPECT_EQ(equalValues(each.right, each.left), each.result) << &each - cases << " turned round";
    }
}

TEST(Convert, AChainOfDefaultValuesEnds) {
    Variant chain(u"1");
    for (int level = 0; level < 1000; ++level) chain = holder(chain);
    EXPECT_EQ(toLong(chain), kNo);
    EXPECT_FALSE(truth(chain));
}

}  // namespace
}  // namespace velmor::automation
