#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Seed.h"
#include "properties/Describe.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Date;
using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

class PropertyCollection : public testing::Test {
protected:
    void addAll(std::initializer_list<const char16_t*> all) {
        for (const char16_t* const name : all) collection->AddLng(name, collection->Count() + 1);
    }

    platform::MemoryServices services;
    PropertiesRef collection = newProperties(services);
};

TEST_F(PropertyCollection, StartsAPropertyAsLongZero) {
    const PropertyRef property = collection->GetProperty(u"New", std::int32_t{0});
    EXPECT_EQ(property->ValueType(), 3);
    EXPECT_FALSE(property->Changed());
    EXPECT_EQ(property->Created(), property->Modified());
    EXPECT_FALSE(property->HasAttributes());
    EXPECT_EQ(property->Attributes()->Count(), 0);
    EXPECT_FALSE(property->HasAttributes());
}

TEST_F(PropertyCollection, MarksWhatSettersDo) {
    const PropertyRef property = collection->AddLng(u"a", 1);
    services.clock.advance(60);
    property->SetValue(collection);
    EXPECT_FALSE(property->Changed());
    EXPECT_NE(property->Created(), property->Modified());
    EXPECT_EQ(property->ValueType(), 9);
    EXPECT_EQ(property->ValueTypeName(), u"privProperties");
    property->ValueStr(u"x");
    EXPECT_TRUE(property->Changed());
    EXPECT_TRUE(collection->Changed());
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
    EXPECT_EQ(property->ValueLng(), 0);
    EXPECT_EQ(property->ValueDate(), Date{});
    EXPECT_FALSE(property->ValueBoolean());
    property->ValueStr(u"3/5/2004");
    EXPECT_EQ(property->ValueDate().days, 38051);
    property->ValueDbl(2.5);
    EXPECT_EQ(property->ValueLng(), 2);
    EXPECT_EQ(property->ValueInt(), 2);
    EXPECT_EQ(property->ValueDate().days, 2.5);
    EXPECT_TRUE(property->ValueTrue());
    EXPECT_TRUE(property->ValueTrue(2.5));
    EXPECT_FALSE(property->ValueTrue(u"x"));
    property->ValueBoolean(true);
    EXPECT_EQ(property->ValueDate(), Date{});  // a boolean is no date, though it converts
    property->Value(automation::Null{});
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
    EXPECT_EQ(collection->GetValueStrCatDump(u"a", u"d"), u"");  // the builder is made for the call
    EXPECT_EQ(collection->GetValueStrCatDump(u"missing", u"d"), u"d");
}

TEST_F(PropertyCollection, EstimatesSizes) {
    struct Row {
        Variant value;
        std::int32_t encoding, size, stored;  // of a property named AB
    };
    // clang-format off
    const Row rows[] = {
        {5, 0, 2, 16}, {true, 0, 2, 9}, {std::int16_t{5}, 0, 1, 11}, {1.5F, 0, 4, 18}, {1.5, 0, 8, 26},
        {Date{1}, 0, 8, 27}, {Variant(), 0, 0, 0}, {automation::Null{}, 0, 0, 7}, {ObjectRef(), 0, 32, 0},
        {u"abc", 0, 3, 9}, {u"a\":", 0, 3, 13}, {u"abc", 1, 3, 13}};
    // clang-format on
    for (const Row& row : rows) {
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

TEST_F(PropertyCollection, KeysTheFirstOfAName) {
    addAll({u"A", u"a", u"b"});
    EXPECT_EQ(collection->Item(u"a")->ValueLng(), 1);
    EXPECT_TRUE(collection->Item(1)->Multiple());
    EXPECT_FALSE(collection->Item(2)->Multiple());
    EXPECT_EQ(collection->Item(Variant(2.0))->ValueLng(), 2);
    for (const Variant& index : {Variant(u"1"), Variant(0), Variant(4), Variant(automation::Null{})}) {
        EXPECT_EQ(collection->Item(index), nullptr) << describe(index);  // a text is a name
    }
    collection->Remove(u"A");
    EXPECT_EQ(collection->Item(u"a"), nullptr);  // the key went with it
    EXPECT_EQ(collection->GetPropertyIndex(u"a"), 1);
}

TEST_F(PropertyCollection, GivesDefaults) {
    EXPECT_EQ(collection->GetValueLng(u"missing", 7), 7);
    EXPECT_EQ(collection->Count(), 0);
    EXPECT_EQ(collection->GetProperty(u"missing", std::int32_t{7})->ValueLng(), 7);
    EXPECT_EQ(collection->Count(), 1);
    EXPECT_EQ(collection->GetValueObject(u"missing", collection), nullptr);  // there, but no object
    EXPECT_EQ(collection->GetValueObject(u"other", collection), collection);
}

TEST_F(PropertyCollection, InsertsAndMoves) {
    addAll({u"a", u"b", u"c", u"d"});
    const struct {
        std::int32_t index;
        const char16_t* name;
        bool replace;
        const char* after;
    } insertions[] = {{2, u"x", false, "a x b c d"},         {0, u"y", false, "a x b c d y"},
                      {99, u"z", false, "a x b c d y z"},    {1, u"C", false, "C a x b c d y z"},
                      {1, u"c", true, "c C a x b d y z"},    {0, u"c", true, "c C a x b d y z"},
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
    } moves[] = {{u"a", 5, "c C x b a d y z w"},
                 {9, 1, "w c C x b a d y z"},
                 {u"w", 100, "c C x b a d y z w"},
                 {u"w", -1, "w c C x b a d y z"},
                 {u"missing", 1, "w c C x b a d y z"}};
    for (const auto& row : moves) {
        collection->Move(row.from, row.to);
        EXPECT_EQ(names(*collection), row.after);
    }
    EXPECT_NE(collection->Item(u"w"), nullptr);
}

TEST_F(PropertyCollection, EnumeratesWhileEntriesComeAndGo) {
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
    EXPECT_EQ(each->next()->Name(), u"e");  // it keeps what it was made for
}

TEST_F(PropertyCollection, ServesItsMembersByName) {
    const auto call = [](const ObjectRef& object, const char16_t* name, InvokeKind kind,
                         std::vector<Variant> arguments) { return object->invoke(name, kind, arguments); };
    const auto text = [](const Variant& value) { return toUtf8(automation::toText(value).value_or(u"?")); };
    const ObjectRef object = collection;
    const Variant added = call(object, u"add", InvokeKind::method, {u"n", u"5"});
    EXPECT_EQ(text(call(object, u"", InvokeKind::get, {u"N"})), "5");  // the default member of the default member
    EXPECT_EQ(text(call(added.object(), u"", InvokeKind::get, {})), "5");
    call(added.object(), u"Value", InvokeKind::let, {u"6"});
    EXPECT_EQ(text(call(object, u"GetValueLng", InvokeKind::method, {u"n"})), "6");
    EXPECT_EQ(text(call(object, u"Stored", InvokeKind::get, {})), "n=\"6\":");
    call(object, u"BuildByVal", InvokeKind::method, {u"T>x=1:", false, true});
    EXPECT_EQ(text(call(object, u"Count", InvokeKind::get, {})), "2");
    EXPECT_EQ(call(object, u"Item", InvokeKind::get, {u"none"}).object(), nullptr);
    const ObjectRef each = call(object, u"_NewEnum", InvokeKind::get, {}).object();
    call(each, u"Skip", InvokeKind::method, {std::int32_t{1}});
    EXPECT_EQ(text(call(call(each, u"Next", InvokeKind::method, {}).object(), u"Name", InvokeKind::get, {})), "X");
    EXPECT_EQ(call(each, u"Next", InvokeKind::method, {}).object(), nullptr);
    EXPECT_THROW(call(object, u"NoSuch", InvokeKind::method, {}), Error);
    EXPECT_THROW(call(object, u"Add", InvokeKind::method, {u"n"}), Error);
}

// Held against a plain list on random calls: order, keys and the keys' way out.
TEST_F(PropertyCollection, KeepsOrderAndKeys) {
    const unsigned seed = testSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::vector<std::pair<PropertyRef, bool>> model;  // with whether it carries the key
    const auto keyed = [&](const std::u16string& name) {
        for (std::size_t i = 0; i < model.size(); ++i) {
            if (model[i].second && model[i].first->Name() == name) return i;
        }
        return model.size();
    };
    for (int step = 0; step < 20000; ++step) {
        const std::u16string name(1, static_cast<char16_t>(u'a' + random() % 40));
        const auto index = static_cast<std::int32_t>(random() % (model.size() + 1)) + 1;
        const auto place = model.begin() + (index - 1);
        if (const auto action = random() % 100; action < 52) {
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
        ASSERT_EQ(static_cast<std::size_t>(collection->Count()), model.size());
        for (std::size_t i = 0; i < model.size(); ++i) {
            ASSERT_EQ(collection->Item(static_cast<std::int32_t>(i) + 1), model[i].first) << step;
        }
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
}

}  // namespace
}  // namespace velmor
