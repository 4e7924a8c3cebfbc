#include <gtest/gtest.h>

#include "properties/Describe.h"

namespace velmor {
namespace {

class PropertySorting : public PropertyTest {};

// Entries of one name are inserted one by one, each before the first placed one of its type that is greater.
TEST_F(PropertySorting, OrdersNamesThenValuesOfOneType) {
    const std::pair<std::u16string, std::u16string> cases[] = {
        {u"b=2&:B=3&:a=1&:b=1&:", u"B=3&:a=1&:b=1&:b=2&:"},
        {u"a=2&:a=\"x\":a=1&:a=1.5#:a=\"X\":a=3&:", u"a=1&:a=2&:a=\"X\":a=\"x\":a=1.5#:a=3&:"},
        {u"a=!2!:a=!1.5!:a=2$:a=1.5$:a=False:a=True:a=2%:a=1%:",
         u"a=!1.5!:a=!2!:a=1.5$:a=2$:a=True:a=False:a=1%:a=2%:"},
        {u"a=#6 Mar 2004 12:00:00 AM#:a=#5 Mar 2004 12:00:00 AM#:",
         u"a=#5 Mar 2004 12:00:00 AM#:a=#6 Mar 2004 12:00:00 AM#:"},
        {u"a=1&:a=NUL:a=0&:", u"a=0&:a=1&:a=NUL:"},
    };
    for (const auto& [text, sorted] : cases) {
        collection->Build(text);
        collection->Sort();
        EXPECT_EQ(toUtf8(collection->Stored()), toUtf8(sorted));
    }
    collection->RemoveAll();
    for (const std::uint8_t byte : {1, 3, 2}) collection->Add(u"a", byte);
    collection->Sort();
    EXPECT_EQ(collection->Stored(), u"a=\"2\":a=\"3\":a=\"1\":");  // the last one first
}

TEST_F(PropertySorting, KeepsTheKeyWithTheFirstOfAName) {
    for (const std::int32_t value : {5, 3, 4}) collection->AddLng(u"b", value);
    for (int times = 0; times < 2; ++times) {
        collection->Sort();
        EXPECT_EQ(collection->Stored(), u"b=3&:b=4&:b=5&:");
        EXPECT_EQ(collection->GetValueLng(u"b"), times == 0 ? 5 : 3);
        EXPECT_TRUE(collection->Item(3)->Multiple());
    }
}

}  // namespace
}  // namespace velmor
