#include <gtest/gtest.h>

#include <limits>

#include "common/ByteText.h"
#include "properties/Describe.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Currency;
using automation::Date;
using automation::Decimal;
using automation::Null;
using automation::Variant;

constexpr char16_t allSubstitutes[] = u"\u00B5\u00B6\u00B7\u00B8\u00B9\u00BA\u00BB\u00BC\u00BD\u00BE\u00BF\":";

class PropertyText : public PropertyTest {};

TEST_F(PropertyText, WritesEachType) {
    EXPECT_EQ(collection->Stored(), u"");
    // clang-format off
    const struct {
        const char16_t* name;
        Variant value;
        const char* stored;
    } cases[] = {
        {u"Gone", Null{}, "Gone=NUL:"}, {u"Qty", std::int16_t{12}, "Qty=12%:"}, {u"Count", -5, "Count=-5&:"},
        {u"Ratio", 1.5F, "Ratio=1.5!:"}, {u"Total", 2.25, "Total=2.25#:"}, {u"Price", Currency{99900}, "Price=9.99$:"},
        {u"When", Date{38051 + (14 * 3600 + 7 * 60 + 9) / 86400.0}, "When=#5 Mar 2004 2:07:09 PM#:"},
        {u"Ok", true, "Ok=True:"}, {u"Amount", Decimal{0, 125, 1, false}, "Amount=!12.5!:"},
        {u"Quote", u"He said \"hi\"", "Quote=\"He said \"hi\"\":"}, {u"Empty", Variant(), "Empty=\"\":"},
        {u"Byte", std::uint8_t{7}, "Byte=\"7\":"}, {u"Old", Date{-648893}, "Old=#22 May 0123 12:00:00 AM#:"},
        {u"Never", Date{1e9}, "Never=1000000000#:"}};
    // clang-format on
    std::string all;
    for (const auto& row : cases) {
        collection->Add(row.name, row.value);
        EXPECT_EQ(toUtf8(collection->Stored()), all += row.stored);
    }
    const PropertiesRef read = newProperties(services);
    read->Build(collection->Stored());
    EXPECT_EQ(toUtf8(read->Stored()), all);
    EXPECT_EQ(describe(*read).substr(0, 40), "Gone=Null | Qty=Integer 12 | Count=Long ");
}

TEST_F(PropertyText, KeepsNumbersAtBothEndsOfTheirRange) {
    // clang-format off
    using Double = std::numeric_limits<double>;
    using Single = std::numeric_limits<float>;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    constexpr auto wholeRange = std::numeric_limits<std::uint64_t>::max();
    for (const Variant& value : {
             Variant(Double::max()), Variant(Double::lowest()), Variant(Double::min()), Variant(Double::denorm_min()),
             Variant(Single::max()), Variant(Single::lowest()), Variant(Single::denorm_min()),
             Variant(Currency{most}), Variant(Currency{-most - 1}), Variant(Currency{12345678901234567}),
             Variant(Decimal{~0U, wholeRange, 0, true}), Variant(Decimal{~0U, wholeRange, 28, false}), Variant(Decimal{0, 1, 28, false}),
             Variant(std::numeric_limits<std::int32_t>::min()), Variant(std::numeric_limits<std::int16_t>::min())}) {
        // clang-format on
        collection->Add(u"n", value, true);
        const std::u16string text = collection->Stored();
        collection->Build(text);
        EXPECT_EQ(collection->Item(1)->ValueType(), value.typeCode()) << toUtf8(text);
        EXPECT_EQ(toUtf8(collection->Stored()), toUtf8(text));
    }
}

TEST_F(PropertyText, KeepsNamesWithColons) {
    for (const char16_t* name : {u"Customer:Name", u":", u"::before", u":a!b"}) {
        collection->AddStr(name, u"x")->Attributes()->AddLng(name, 1);
    }
    EXPECT_EQ(collection->Stored().substr(0, 18), u"Customer!@Name=\"x\"");
    const std::string before = names(*collection);
    collection->Build(collection->Stored());
    EXPECT_EQ(names(*collection), before);
    EXPECT_EQ(collection->Item(3)->Attributes()->Item(1)->Name(), u"::before");
}

// Every level is encoded again, so the text would grow by a third each time.
TEST_F(PropertyText, RefusesCollectionsThatOutgrowTheirLimit) {
    const PropertiesRef inner = newProperties(services);
    inner->AddStr(u"text", std::u16string(privProperties::maximumNestedLength, u'x'));
    collection->AddObject(u"inner", inner);
    EXPECT_THROW(collection->Stored(), Error);
    EXPECT_FALSE(collection->SaveFile(u"f"));
    collection->Remove(u"inner");
    EXPECT_EQ(collection->Stored(), u"");
}

TEST_F(PropertyText, WritesAnEntryAlikeBeforeAndAfterItIsRequested) {
    constexpr std::u16string_view written[] = {u"t>:",
                                               u"z=0&:",
                                               u"n=12&:",
                                               u"y=-5&:",
                                               u"x=007&:",
                                               u"w=999999999&:",
                                               u"v=9999999999&:",
                                               u"u=5:",
                                               u"s=&:",
                                               u"r=True:",
                                               u"q=true:",
                                               u"p=NUL:",
                                               u"o=1.50#:",
                                               u"  m=\"a\":",
                                               u"l=\"\":",
                                               u"k=\"a\"b=c\":",
                                               u"i=~RO~Font\"x\":",
                                               u"h:",
                                               u"g=~CE\"\u00B6a\":"};
    for (const std::u16string_view delimiter : {u":", u"|"}) {
        std::u16string text;
        for (const std::u16string_view entry : written) text.append(entry, 0, entry.size() - 1).append(delimiter);
        collection->Build(text, false, false, delimiter);
        const std::u16string stored = collection->Stored(), command = collection->TagCommand();
        for (std::int32_t i = 1; i <= collection->Count(); ++i) EXPECT_NE(collection->Item(i), nullptr);
        EXPECT_EQ(toUtf8(stored), toUtf8(collection->Stored()));
        EXPECT_EQ(toUtf8(command), toUtf8(collection->TagCommand()));
    }
}

TEST_F(PropertyText, WritesTextsThatHoldATerminator) {
    const struct {
        const char16_t* value;
        std::int32_t encoding;
        std::u16string stored, delimited;
    } rows[] = {
        {u"a\":b", 0, u"~CE\"\u00B5a\u00B5:b\":", u"~64\"YSI6Yg==\":"},
        {u"\u00B5\":", 0, u"~CE\"\u00B6\u00B5\u00B6:\":", u"~64\"wrUiOg==\":"},
        {u"\u03BC\":", 0, u"~CE\"\u00B6\u03BC\u00B6:\":", u"~64\"zrwiOg==\":"},  // mu equals the micro sign
        {u"\u00B5\u00B6\u00B7\u00B8\u00B9\u00BA\u00BB\u00BC\u00BD\u00BE\"", 8,
         u"~CE\"\u00BF\u00B5\u00B6\u00B7\u00B8\u00B9\u00BA\u00BB\u00BC\u00BD\u00BE\u00BF\":",
         u"~CE\"\u00BF\u00B5\u00B6\u00B7\u00B8\u00B9\u00BA\u00BB\u00BC\u00BD\u00BE\u00BF\":"},
        {allSubstitutes, 0, u"~64\"" + base64(toUtf8(allSubstitutes)) + u"\":",
         u"~64\"" + base64(toUtf8(allSubstitutes)) + u"\":"},
        {u"ab", 8, u"~CE\"\u00B5ab\":", u"~CE\"\u00B5ab\":"},
        {u"ab", 1, u"~64\"YWI=\":", u"~64\"YWI=\":"},
        {u"a\u00E9", 2, u"~HX\"61C3A9\":", u"~HX\"61C3A9\":"},
    };
    for (const auto& row : rows) {
        collection->AddStr(u"n", row.value, true)->Encoding(row.encoding);
        EXPECT_EQ(toUtf8(collection->Stored()), toUtf8(u"n=" + row.stored));
        EXPECT_EQ(toUtf8(collection->Delimited()), toUtf8(u"n=" + row.delimited));
        for (const std::u16string& text : {collection->Stored(), collection->Delimited()}) {
            collection->Build(text);
            EXPECT_EQ(collection->GetValueStr(u"n"), row.value) << toUtf8(text);
        }
    }
}

TEST_F(PropertyText, WritesChildren) {
    const PropertyRef property = collection->AddLng(u"n", 1);
    property->Attributes()->AddLng(u"a", 2);
    property->Properties()->AddLng(u"p", 3);
    EXPECT_EQ(toUtf8(collection->Stored()), "n=1&:n=~AT\"-a=2&:\":n=~PR\"-p=3&:\":");
    // A quote without a colon: plain for attributes, substituted for properties.
    property->keepChild(privProperty::Child::attributes, u"a=\"b");
    property->keepChild(privProperty::Child::properties, u"p=\"q");
    EXPECT_EQ(toUtf8(collection->Stored()), toUtf8(u"n=1&:n=~AT\"-a=\"b\":n=~PR\"\u00B5p=\u00B5q\":"));
    property->keepChild(privProperty::Child::attributes, allSubstitutes);
    property->keepChild(privProperty::Child::properties, u"");
    EXPECT_EQ(toUtf8(collection->Stored()), toUtf8(u"n=1&:n=~AT\"+" + base64(toUtf8(allSubstitutes)) + u"\":"));
}

TEST_F(PropertyText, WritesObjects) {
    const PropertiesRef inner = newProperties(services);
    inner->AddStr(u"x", u"a\":b");
    collection->AddObject(u"Sub", inner);
    collection->AddObject(u"None", nullptr);
    services.files.set(u"C:\\logo.bmp", "GIF89a");
    const automation::ObjectRef picture = services.pictures.load(u"C:\\logo.bmp");
    ASSERT_NE(picture, nullptr);
    collection->AddObject(u"Logo", picture);
    EXPECT_EQ(toUtf8(collection->Stored()),
              toUtf8(u"Sub=~RO~kvProperties\"" + base64(toUtf8(inner->Delimited())) + u"\":None=Logo="));

    // A tag contains pictures, which are read again.
    const PropertiesRef tag = newProperties(services);
    tag->AddLng(u"TAG", 0);
    tag->AddObject(u"LOGO", picture);
    const std::u16string text = tag->TagCommand();
    EXPECT_EQ(toUtf8(text), "TAG>LOGO=~RO~Picture\"R0lGODlh\":");
    tag->Build(text, false, true);
    EXPECT_EQ(tag->Item(u"LOGO")->ValueTypeName(), u"Picture");
    EXPECT_EQ(tag->TagCommand(), text);
    EXPECT_EQ(services.files.paths().size(), 1U);  // no temporary file is left
    services.pictures.failSaving = true;
    EXPECT_EQ(tag->TagCommand(), u"TAG>LOGO=");
    EXPECT_EQ(services.files.paths().size(), 1U);
}

TEST_F(PropertyText, WritesTags) {
    EXPECT_EQ(collection->TagCommand(), u"");
    collection->Build(u"tag>setproperty:name=value:n=5:b=True:", false, true);
    EXPECT_EQ(collection->TagCommand(), u"TAG>SETPROPERTY:NAME=\"value\":N=5&:B=True:");
    collection->AddStr(u"T", u"\":");
    EXPECT_EQ(toUtf8(collection->TagCommand()),
              toUtf8(u"TAG>SETPROPERTY:NAME=\"value\":N=5&:B=True:T=~CE\"\u00B5\u00B5:\":"));
    EXPECT_EQ(collection->Command(), u"TAG>SETPROPERTY:NAME=\"value\":N=5&:B=True:T=~64\"Ijo=\":");
}

TEST_F(PropertyText, CountsACollectionWithinItselfAsEmpty) {
    collection->AddLng(u"a", 1);
    collection->AddObject(u"self", collection);
    collection->AddLng(u"b", 2)->Attributes()->AddObject(u"up", collection);
    EXPECT_EQ(toUtf8(collection->Stored()),
              "a=1&:self=~RO~kvProperties\"\":b=2&:b=~AT\"\xC2\xB5up=~RO~kvProperties\xC2\xB5"
              "\xC2\xB5:\":");
    EXPECT_EQ(collection->CountTotal(), 4);
    collection->Dispose();
    collection->RemoveAll();
}

TEST_F(PropertyText, EndsAtDeepNesting) {
    PropertiesRef inner = collection;
    std::u16string text;
    for (int i = 0; i < 20000; ++i) inner = inner->AddLng(u"n", i)->Properties(), text += u"a=~PR\"-";
    EXPECT_EQ(collection->CountTotal(), privProperties::maximumNesting + 1);
    EXPECT_FALSE(collection->Stored().empty());
    for (int i = 0; i < 100000; ++i) {
        const PropertiesRef next = newProperties(services);
        inner->AddObject(u"object", next);
        inner = next;
    }
    EXPECT_GT(collection->SizeStored(), 0);
    collection->Build(text + u"a=1\"");  // releases the old ones too
    EXPECT_LE(collection->CountTotal(), privProperties::maximumNesting + 1);
}

}  // namespace
}  // namespace velmor
