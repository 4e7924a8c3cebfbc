#include <gtest/gtest.h>

#include "Random.h"
#include "properties/Describe.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Date;
using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

class PropertyCollection : public PropertyTest {
protected:
    void addAll(std::initializer_list<const char16_t*> all) {
        for (const char16_t* const name : all) collection->AddLng(name, collection->Count() + 1);
    }
};

TEST_F(PropertyCollection, MarksTheChangesOfSetters) {
    const PropertyRef property = collection->GetProperty(u"a", std::int32_t{0});
    EXPECT_EQ(property->ValueType(), 3);
    EXPECT_FALSE(property->Changed());
    EXPECT_EQ(property->Created(), property->Modified());
    EXPECT_EQ(property->Attributes()->Count(), 0);
    EXPECT_FALSE(property->HasAttributes());
    EXPECT_EQ(collection->GetValueLng(u"missing", 7), 7);
    EXPECT_EQ(collection->GetValueObject(u"a", collection), nullptr);  // present, but not an object
    EXPECT_EQ(collection->Count(), 1);
    services.clock.advance(60);
    property->SetValue(collection);
    EXPECT_FALSE(property->Changed());
    EXPECT_NE(property->Created(), property->Modified());
    EXPECT_EQ(property->ValueType(), 9);
    EXPECT_EQ(property->ValueTypeName(), u"privProperties");
    property->ValueStr(u"x");
    EXPECT_TRUE(property->Changed() && collection->Changed());
    collection->AddStr(u"A", u"y", true);
    EXPECT_FALSE(collection->Changed());
    EXPECT_EQ(collection->Count(), 1);
    property->Encoding(3);
    EXPECT_EQ(property->Encoding(), 0);
    property->Encoding(8);
    EXPECT_TRUE(property->Encode());
}

TEST_F(PropertyCollection, ConvertsWithoutRaising) {
    const PropertyRef property = collection->AddStr(u"a", u"abc");
    const struct {
        Variant value;
        std::int32_t number;
        double days;
        bool boolean, isTrue;
    } cases[] = {{u"abc", 0, 0, false, false},
                 {u"3/5/2004", 0, 38051, false, false},
                 {2.5, 2, 2.5, true, true},
                 {automation::Currency{25000}, 2, 2.5, true, true},
                 {true, -1, 0, true, true},  // a boolean is not a date, although it converts
                 {automation::Null{}, 0, 0, false, false}};
    for (const auto& row : cases) {
        property->Value(row.value);
        EXPECT_EQ(property->ValueLng(), row.number) << describe(row.value);
        EXPECT_EQ(property->ValueInt(), row.number);
        EXPECT_EQ(property->ValueDate().days, row.days);
        EXPECT_EQ(property->ValueBoolean(), row.boolean);
        EXPECT_EQ(property->ValueTrue(), row.isTrue);
        EXPECT_EQ(property->ValueTrue(row.value), row.value.get<automation::Null>() == nullptr);
        EXPECT_FALSE(property->ValueTrue(u"x"));
    }
    EXPECT_EQ(property->ValueStr(), u"");
}

TEST_F(PropertyCollection, HoldsTextInABuilder) {
    const PropertyRef property = collection->AddLng(u"a", 5);
    property->StrCatValue()->Append(u"x\":");
    EXPECT_EQ(property->ValueTypeName(), u"String");
    EXPECT_EQ(property->ValueStr(), u"x\":");
    EXPECT_EQ(property->Size(), 3);
    EXPECT_EQ(collection->Delimited(), u"a=~64\"eCI6\":");
    EXPECT_EQ(collection->GetValueStrCatDump(u"a"), u"x\":");
    EXPECT_EQ(property->ValueStr(), u"");
    property->ValueLng(7);
    EXPECT_EQ(collection->GetValueLng(u"A"), 7);
    EXPECT_EQ(collection->GetValueStrCatDump(u"a", u"d"), u"");  // makes a builder
    EXPECT_EQ(collection->GetValueStrCatDump(u"missing", u"d"), u"d");
}

TEST_F(PropertyCollection, EstimatesSizes) {
    // clang-format off
    const struct {
        Variant value;
        std::int32_t encoding, size, stored;  // of a property named AB
    } rows[] = {
        {5, 0, 2, 16}, {true, 0, 2, 9}, {std::int16_t{5}, 0, 1, 11}, {1.5F, 0, 4, 18}, {1.5, 0, 8, 26},
        {Date{1}, 0, 8, 27}, {Variant(), 0, 0, 0}, {automation::Null{}, 0, 0, 7}, {ObjectRef(), 0, 32, 0},
        {u"abc", 0, 3, 9}, {u"a\":", 0, 3, 13}, {u"abc", 1, 3, 13},
        {std::u16string(100, u'x'), 1, 100, 143}};
    // clang-format on
    for (const auto& row : rows) {
        const PropertyRef property = collection->Add(u"AB", row.value, true);
        property->Encoding(row.encoding);
        EXPECT_EQ(property->Size(), row.size) << describe(row.value);
        EXPECT_EQ(property->SizeStored(), row.stored) << describe(row.value);
    }
    // A property counts once for its attributes, once for its children, and not at all without.
    const PropertyRef property = collection->AddLng(u"AB", 5, true);
    property->Encoding(0);
    EXPECT_EQ(collection->Size(), 0);
    property->Attributes()->AddLng(u"x", 1);
    EXPECT_EQ(collection->Size(), 2);
    property->Properties()->AddLng(u"y", 1);
    EXPECT_EQ(collection->Size(), 4);
    EXPECT_EQ(collection->SizeStored(), 32);
    EXPECT_EQ(collection->CountTotal(), 3);
}

TEST_F(PropertyCollection, RaisesOverflowOfSizes) {
    PropertiesRef inner = collection;
    for (int i = 0; i < 40; ++i) {
        const PropertyRef property = inner->AddLng(u"n", i);
        property->Attributes()->AddLng(u"a", i);
        inner = property->Properties();
    }
    EXPECT_THROW(collection->SizeStored(), Error);
    EXPECT_EQ(collection->CountTotal(), 80);
}

TEST_F(PropertyCollection, FindsTheFirstOfAName) {
    addAll({u"A", u"a", u"b"});
    EXPECT_EQ(collection->Item(u"a")->ValueLng(), 1);
    EXPECT_TRUE(collection->Item(1)->Multiple());
    EXPECT_FALSE(collection->Item(2)->Multiple());
    EXPECT_EQ(collection->Item(Variant(2.0))->ValueLng(), 2);
    for (const Variant& index : {Variant(u"1"), Variant(0), Variant(4), Variant(automation::Null{})}) {
        EXPECT_EQ(collection->Item(index), nullptr) << describe(index);  // a text is a name
    }
    collection->Remove(u"A");
    EXPECT_EQ(collection->Item(u"a"), nullptr);  // the key is removed too
    EXPECT_EQ(collection->GetPropertyIndex(u"a"), 1);
}

// Entries of a text become properties one by one, and cannot be told from properties that were added.
TEST_F(PropertyCollection, MakesReadEntriesWhenTheyAreAskedFor) {
    const automation::Date read = services.clock.now();
    collection->Build(u"a=1:b=\"x\":A=~CE\"\u00B5\u00B5\":b=~AT\"-y=1:\":");
    services.clock.advance(60);
    EXPECT_EQ(collection->GetPropertyIndex(u"B"), 2);
    const PropertyRef second = collection->Item(3);
    EXPECT_EQ(second->Created(), read);
    EXPECT_EQ(second->Encoding(), 8);
    EXPECT_FALSE(second->Multiple() || collection->Changed());
    EXPECT_EQ(collection->Insert(1, u"a", u"new")->Name(), u"a");
    EXPECT_TRUE(collection->Item(u"A")->Multiple());
    EXPECT_EQ(collection->Item(4), second);
    collection->RemoveAll();
    EXPECT_EQ(second->ValueStr(), u"\"");  // it does not need the text
}

TEST_F(PropertyCollection, SetsTextsAsPropertiesDo) {
    std::u16string buffer;
    const std::u16string long1(300, u'1');
    collection->AddLng(u"n", 1);
    for (const auto& [name, value] : {std::pair(u"a", u"x\":"), {u"B", u"y"}, {u"A", u"z"}, {u"n", u"2"}, {u"", u""}}) {
        collection->SetText(name, value);
    }
    collection->SetText(u"c", long1);
    EXPECT_EQ(collection->Stored(), u"n=\"2\":a=\"z\":B=\"y\":=\"\":c=\"" + long1 + u"\":");
    EXPECT_EQ(collection->textOf(u"b", buffer), u"y");
    EXPECT_FALSE(collection->Changed());
    const PropertyRef property = collection->Item(u"b");
    EXPECT_EQ(property->Created(), services.clock.now());
    property->ValueLng(3);
    EXPECT_EQ(collection->textOf(u"b", buffer), u"3");
    property->StrCatValue()->Append(u"built");
    EXPECT_EQ(collection->textOf(u"b", buffer), u"built");
    collection->Remove(u"c");
    EXPECT_EQ(collection->textOf(u"c", buffer), std::nullopt);
    collection->SetText(u"c", u"again");
    EXPECT_EQ(collection->Item(5)->ValueStr(), u"again");
}

TEST_F(PropertyCollection, InsertsAndMoves) {
    addAll({u"a", u"b", u"c", u"d"});
    // clang-format off
    const struct {
        std::int32_t index;
        const char16_t* name;
        bool replace;
        const char* after;
    } insertions[] = {
        {2, u"x", false, "a x b c d"}, {0, u"y", false, "a x b c d y"}, {99, u"z", false, "a x b c d y z"},
        {1, u"C", false, "C a x b c d y z"}, {1, u"c", true, "c C a x b d y z"}, {0, u"c", true, "c C a x b d y z"},
        {-5, u"w", false, "c C a x b d y z w"}};
    for (const auto& row : insertions) {
        collection->Insert(row.index, row.name, std::int32_t{9}, row.replace);
        EXPECT_EQ(names(*collection), row.after);
    }
    EXPECT_EQ(collection->Item(u"C")->ValueLng(), 9);
    const struct {
        Variant from;
        std::int32_t to;
        const char* after;
    } moves[] = {
        {u"a", 5, "c C x b a d y z w"}, {9, 1, "w c C x b a d y z"}, {u"w", 100, "c C x b a d y z w"},
        {u"w", -1, "w c C x b a d y z"}, {u"missing", 1, "w c C x b a d y z"}};
    // clang-format on
    for (const auto& row : moves) {
        collection->Move(row.from, row.to);
        EXPECT_EQ(names(*collection), row.after);
    }
    EXPECT_NE(collection->Item(u"w"), nullptr);
}

TEST_F(PropertyCollection, EnumeratesDuringChanges) {
    addAll({u"a", u"b", u"c", u"d", u"e"});
    const auto each = collection->NewEnum();
    EXPECT_EQ(each->next()->Name(), u"a");
    EXPECT_EQ(each->next()->Name(), u"b");
    collection->Remove(u"b");
    collection->Remove(u"a");
    EXPECT_EQ(each->next()->Name(), u"c");
    collection->Insert(1, u"x", std::int32_t{0});
    collection->Move(u"e", 1);
    EXPECT_EQ(each->next()->Name(), u"d");
    const auto other = each->clone();
    collection->AddLng(u"f", 0);
    EXPECT_EQ(each->next()->Name(), u"f");
    EXPECT_EQ(each->next(), nullptr);
    EXPECT_TRUE(other->skip(1));
    EXPECT_FALSE(other->skip(1));
    each->reset();
    collection->RemoveAll();
    EXPECT_EQ(each->next()->Name(), u"e");  // it keeps its collection
}

// Compared with a plain list on random calls: order, keys and their removal.
TEST_F(PropertyCollection, KeepsOrderAndKeys) {
    Random random;
    std::vector<std::pair<PropertyRef, bool>> model;  // with whether it carries the key
    const auto keyed = [&](const std::u16string& name) {
        for (std::size_t i = 0; i < model.size(); ++i) {
            if (model[i].second && model[i].first->Name() == name) return i;
        }
        return model.size();
    };
    for (int step = 0; step < 20000; ++step) {
        const std::u16string name(1, static_cast<char16_t>(u'a' + random.below(40)));
        const auto index = static_cast<std::int32_t>(random.below(model.size() + 1)) + 1;
        const auto place = model.begin() + (index - 1);
        if (const unsigned action = random.below(100); action < 52) {
            const bool isNew = keyed(name) == model.size();
            model.insert(place, {collection->Insert(index, name, std::int32_t{step}), isNew});
        } else if (action < 75 && place != model.end()) {
            collection->Remove(index);
            model.erase(place);
        } else if (action < 98) {
            collection->Remove(name);
            if (const auto found = keyed(name); found != model.size()) {
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(found));
            }
        }
        const auto found = keyed(name);
        ASSERT_EQ(collection->Item(name), found == model.size() ? nullptr : model[found].first) << step;
        const auto each = collection->NewEnum();
        for (const auto& [property, hasKey] : model) ASSERT_EQ(each->next(), property) << step;
        ASSERT_EQ(each->next(), nullptr);
    }
}

TEST_F(PropertyCollection, HandlesManyEntries) {
    for (int i = 0; i < 100000; ++i) collection->AddLng(u"name " + fromUtf8(std::to_string(i)), i);
    for (int i = 0; i < 100000; ++i) collection->AddLng(u"same", i);
    EXPECT_EQ(collection->GetValueLng(u"NAME 77777"), 77777);
    collection->Sort();
    EXPECT_EQ(collection->Item(200000)->ValueLng(), 99999);
    const std::u16string text = collection->Stored();
    collection->Build(text);
    EXPECT_EQ(collection->Stored(), text);
    for (int i = 0; i < 100000; ++i) collection->Remove(1);
    EXPECT_EQ(collection->Count(), 100000);
    for (int i = 0; i < 100000; ++i) collection->Insert(1 + i % 2, u"front", i);
    EXPECT_EQ(collection->Item(1)->ValueLng(), 99998);
}

}  // namespace
}  // namespace velmor
