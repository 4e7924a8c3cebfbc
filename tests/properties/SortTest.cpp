#include <gtest/gtest.h>

#include "Random.h"
#include "automation/DecimalNumber.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

using automation::Variant;

// The literal rule: which entry precedes which.
bool sortsAfter(const privProperty& placed, const privProperty& added) {
    if (placed.Name() != added.Name()) return placed.Name() > added.Name();
    if (placed.ValueType() != added.ValueType()) return false;
    if (placed.ValueType() > 15) return true;
    if (placed.ValueType() == 14) {
        const auto decimal = [](const privProperty& of) { return automation::toDecimal(of.Value()).value(); };
        return automation::portable::compareDecimals(decimal(placed), decimal(added)) > 0;
    }
    if (placed.ValueType() == 8) return placed.ValueStr() > added.ValueStr();
    const bool compared = placed.ValueType() >= 2 && placed.ValueType() != 9 && placed.ValueType() != 10;
    return compared && placed.ValueDbl() > added.ValueDbl();
}

std::vector<PropertyRef> literallySorted(const privProperties& collection) {
    std::vector<PropertyRef> sorted;
    const auto each = collection.NewEnum();
    while (const PropertyRef added = each->next()) {
        auto place = sorted.begin();
        while (place != sorted.end() && !sortsAfter(**place, *added)) ++place;
        sorted.insert(place, added);
    }
    return sorted;
}

class PropertySorting : public PropertyTest {};

TEST_F(PropertySorting, KeepsTheKeyWithTheFirstOfAName) {
    for (const std::int32_t value : {5, 3, 4}) collection->AddLng(u"b", value);
    for (int times = 0; times < 2; ++times) {
        collection->Sort();
        EXPECT_EQ(collection->Stored(), u"b=3&:b=4&:b=5&:");
        EXPECT_EQ(collection->GetValueLng(u"b"), times == 0 ? 5 : 3);
        EXPECT_TRUE(collection->Item(3)->Multiple());
    }
}

TEST_F(PropertySorting, EqualsInsertionOneByOne) {
    Random random;
    for (int round = 0; round < 2000; ++round) {
        collection->RemoveAll();
        for (unsigned count = random.below(30); count > 0; --count) {
            const auto number = static_cast<std::int32_t>(random.below(4));
            const std::u16string letter(1, static_cast<char16_t>(u'a' + number));
            // clang-format off
            const Variant values[] = {
                number, static_cast<std::int16_t>(number), number / 2.0, std::numeric_limits<double>::quiet_NaN(),
                automation::Date{static_cast<double>(number)}, automation::Currency{number}, number > 1, letter,
                static_cast<std::uint8_t>(number), automation::Null{}, automation::ObjectRef(),
                automation::Decimal{1U << 30, static_cast<std::uint64_t>(number), 1, false}};
            // clang-format on
            const PropertyRef property = collection->Add(std::u16string(1, u"aAb"[random.below(3)]), random.of(values));
            if (random.below(16) == 0) property->StrCatValue()->Append(letter);
        }
        const std::vector<PropertyRef> expected = literallySorted(*collection);
        collection->Sort();
        const auto each = collection->NewEnum();
        for (const PropertyRef& property : expected) ASSERT_EQ(each->next(), property) << round;
        ASSERT_EQ(each->next(), nullptr);
    }
}

}  // namespace
}  // namespace velmor
