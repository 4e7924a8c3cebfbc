// The members of privProperties and privProperty, early-bound through the generated header.

#include <gtest/gtest.h>

#include <cmath>

#include "Host.h"

using namespace host;

namespace {

class PropertiesTest : public testing::Test {
protected:
    ComPtr<_privProperty> item(const wchar_t* key) {
        ComPtr<_privProperty> property;
        EXPECT_HRESULT_SUCCEEDED(list->get_Item(*Value(key), property.put()));
        return property;
    }
    ComPtr<_privProperty> add(const wchar_t* name, Value value) {
        ComPtr<_privProperty> property;
        EXPECT_HRESULT_SUCCEEDED(list->Add(Text(name), *value, VARIANT_FALSE, property.put()));
        return property;
    }
    std::wstring stored() {
        Text text;
        EXPECT_HRESULT_SUCCEEDED(list->get_Stored(text.put()));
        return text.str();
    }
    long number(HRESULT (STDMETHODCALLTYPE _privProperties::*getter)(long*)) {
        long value = -1;
        EXPECT_HRESULT_SUCCEEDED((list.get()->*getter)(&value));
        return value;
    }

    ComPtr<_privProperties> list = newCollection();
};

TEST_F(PropertiesTest, TypedAddsAndGetsMeet) {
    ComPtr<_privProperty> p;
    EXPECT_HRESULT_SUCCEEDED(list->AddStr(Text(L"s"), Text(L"text"), VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddLng(Text(L"l"), 70000, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddDbl(Text(L"d"), 2.25, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddSng(Text(L"f"), 1.5F, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddDate(Text(L"t"), 38051.5, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddBoolean(Text(L"b"), VARIANT_TRUE, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->AddInt(Text(L"i"), 12, VARIANT_FALSE, p.put()));
    EXPECT_EQ(stored(), L"s=\"text\":l=70000&:d=2.25#:f=1.5!:t=#5 Mar 2004 12:00:00 PM#:b=True:i=12%:");

    Text text;
    long l = 0;
    short i = 0;
    double d = 0;
    float f = 0;
    DATE t = 0;
    VARIANT_BOOL b = VARIANT_FALSE;
    ScopedVariant v;
    EXPECT_HRESULT_SUCCEEDED(list->GetValueStr(Text(L"S"), Text(), text.put()));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueLng(Text(L"l"), 0, &l));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueInt(Text(L"i"), 0, &i));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueDbl(Text(L"d"), 0, &d));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueSng(Text(L"f"), 0, &f));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueDate(Text(L"t"), 0, &t));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueBoolean(Text(L"b"), VARIANT_FALSE, &b));
    EXPECT_HRESULT_SUCCEEDED(list->GetValue(Text(L"l"), *Value(1), v.put()));
    EXPECT_EQ(text.str(), L"text");
    EXPECT_EQ(l, 70000);
    EXPECT_EQ(i, 12);
    EXPECT_EQ(d, 2.25);
    EXPECT_EQ(f, 1.5F);
    EXPECT_EQ(t, 38051.5);
    EXPECT_EQ(b, VARIANT_TRUE);
    EXPECT_EQ(v->vt, VT_I4);
    EXPECT_HRESULT_SUCCEEDED(list->GetValueLng(Text(L"missing"), 7, &l));
    EXPECT_EQ(l, 7);
    EXPECT_HRESULT_SUCCEEDED(list->GetValueDbl(Text(L"missing"), 7.5, &d));
    EXPECT_EQ(d, 7.5);
    EXPECT_HRESULT_SUCCEEDED(list->GetValueStrCatDump(Text(L"missing"), Text(L"none"), text.put()));
    EXPECT_EQ(text.str(), L"none");
    EXPECT_EQ(number(&_privProperties::get_Count), 7);
}

TEST_F(PropertiesTest, DuplicatesOrderAndRemoval) {
    add(L"b", 1);
    add(L"B", 2);
    add(L"a", 3);
    VARIANT_BOOL multiple = VARIANT_FALSE;
    EXPECT_HRESULT_SUCCEEDED(item(L"B")->get_Multiple(&multiple));
    EXPECT_EQ(multiple, VARIANT_TRUE);
    EXPECT_HRESULT_SUCCEEDED(list->Sort());
    EXPECT_EQ(stored(), L"B=2&:a=3&:b=1&:");
    ComPtr<_privProperty> p;
    EXPECT_HRESULT_SUCCEEDED(list->Insert(1, Text(L"c"), *Value(4), VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(list->Move(*Value(L"c"), 3));
    EXPECT_EQ(stored(), L"B=2&:a=3&:c=4&:b=1&:");
    long index = 0;
    EXPECT_HRESULT_SUCCEEDED(list->GetPropertyIndex(Text(L"C"), &index));
    EXPECT_EQ(index, 3);
    for (const Value& key : values(L"none", 0, 99, -1, Value::missing())) {
        EXPECT_HRESULT_SUCCEEDED(list->Remove(*key));
    }
    EXPECT_HRESULT_SUCCEEDED(list->Remove(*Value(1)));
    EXPECT_HRESULT_SUCCEEDED(list->Remove(*Value(L"A")));
    EXPECT_EQ(stored(), L"c=4&:b=1&:");
    EXPECT_HRESULT_SUCCEEDED(list->Dispose());
    EXPECT_HRESULT_SUCCEEDED(list->RemoveAll());
    EXPECT_EQ(number(&_privProperties::get_Count), 0);
}

TEST_F(PropertiesTest, TextFormsAreWrittenAndRead) {
    Text source(L"n=5&:q=\"say \"x\"\":");
    EXPECT_HRESULT_SUCCEEDED(list->Build(source.inOut(), VARIANT_FALSE, VARIANT_FALSE, Text(L":")));
    EXPECT_EQ(source.str(), L"n=5&:q=\"say \"x\"\":");
    EXPECT_HRESULT_SUCCEEDED(list->BuildByVal(Text(L"m=6&:"), VARIANT_TRUE, VARIANT_FALSE, Text(L":")));
    EXPECT_EQ(stored(), L"n=5&:q=\"say \"x\"\":m=6&:");
    EXPECT_HRESULT_SUCCEEDED(list->BuildByDelimited(Text(L"a=1;b=2;"), VARIANT_FALSE, VARIANT_FALSE, Text(L";")));
    EXPECT_EQ(stored(), L"a=1&:b=2&:");
    EXPECT_HRESULT_SUCCEEDED(list->BuildInternal(Text(L"tag>cmd:x=1:"), VARIANT_FALSE, VARIANT_TRUE, Text(L":")));
    Text text;
    EXPECT_HRESULT_SUCCEEDED(list->get_TagCommand(text.put()));
    EXPECT_EQ(text.str(), L"TAG>CMD:X=1&:");
    EXPECT_HRESULT_SUCCEEDED(list->get_Command(text.put()));
    EXPECT_EQ(text.str(), L"TAG>CMD:X=1&:");
    EXPECT_HRESULT_SUCCEEDED(list->get_Delimited(text.put()));
    EXPECT_EQ(text.str(), L"TAG=0&:CMD=0&:X=1&:");
}

TEST_F(PropertiesTest, ChildrenAreCounted) {
    const auto parent = add(L"parent", L"x");
    ComPtr<_privProperties> children, attributes;
    EXPECT_HRESULT_SUCCEEDED(parent->get_Properties(children.put()));
    EXPECT_HRESULT_SUCCEEDED(parent->get_Attributes(attributes.put()));
    ComPtr<_privProperty> p;
    EXPECT_HRESULT_SUCCEEDED(children->AddLng(Text(L"c"), 1, VARIANT_FALSE, p.put()));
    EXPECT_HRESULT_SUCCEEDED(attributes->AddLng(Text(L"a"), 1, VARIANT_FALSE, p.put()));
    EXPECT_EQ(number(&_privProperties::get_CountTotal), 3);
    EXPECT_EQ(number(&_privProperties::get_Size), 2);  // one character, once for each kind of child
    EXPECT_GT(number(&_privProperties::get_SizeStored), 0);
    VARIANT_BOOL changed = VARIANT_TRUE;
    EXPECT_HRESULT_SUCCEEDED(list->get_Changed(&changed));
    EXPECT_EQ(changed, VARIANT_FALSE);
}

TEST_F(PropertiesTest, ObjectsComeBackAsTheyWere) {
    const auto database = create(L"VelmorTest.Database");
    ComPtr<_privProperty> p;
    EXPECT_HRESULT_SUCCEEDED(list->AddObject(Text(L"o"), database.get(), VARIANT_FALSE, p.put()));
    ComPtr<IDispatch> object;
    EXPECT_HRESULT_SUCCEEDED(list->GetValueObject(Text(L"o"), nullptr, object.put()));
    EXPECT_TRUE(same(object.get(), database.get()));
    EXPECT_HRESULT_SUCCEEDED(list->GetValueObject(Text(L"none"), database.get(), object.put()));
    EXPECT_TRUE(same(object.get(), database.get()));
    ScopedVariant value;
    EXPECT_HRESULT_SUCCEEDED(p->get_Value(value.put()));
    ASSERT_EQ(value->vt, VT_DISPATCH);
    EXPECT_TRUE(same(value->pdispVal, database.get()));
    // A let marks the property as changed, a set does not.
    VARIANT_BOOL changed = VARIANT_TRUE;
    EXPECT_HRESULT_SUCCEEDED(p->putref_Value(*Value(database.get())));
    EXPECT_HRESULT_SUCCEEDED(p->get_Changed(&changed));
    EXPECT_EQ(changed, VARIANT_FALSE);
    EXPECT_HRESULT_SUCCEEDED(p->put_Value(*Value(database.get())));
    EXPECT_HRESULT_SUCCEEDED(p->get_Changed(&changed));
    EXPECT_EQ(changed, VARIANT_TRUE);
    EXPECT_HRESULT_SUCCEEDED(p->put_Changed(VARIANT_FALSE));
    EXPECT_HRESULT_SUCCEEDED(p->get_Changed(&changed));
    EXPECT_EQ(changed, VARIANT_FALSE);
}

TEST_F(PropertiesTest, MembersOfAProperty) {
    ComPtr<_privProperty> p;
    EXPECT_HRESULT_SUCCEEDED(list->GetProperty(Text(L"AB"), *Value(7), p.put()));
    Text text;
    EXPECT_HRESULT_SUCCEEDED(p->get_Name(text.put()));
    EXPECT_EQ(text.str(), L"AB");
    long n = 0;
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueType(&n));
    EXPECT_EQ(n, 3);
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueTypeName(text.put()));
    EXPECT_EQ(text.str(), L"Long");
    EXPECT_HRESULT_SUCCEEDED(p->get_SizeStored(&n));
    EXPECT_EQ(n, 16);
    EXPECT_HRESULT_SUCCEEDED(p->get_Size(&n));
    EXPECT_EQ(n, 2);
    DATE created = 0, modified = 1;
    EXPECT_HRESULT_SUCCEEDED(p->get_Created(&created));
    EXPECT_HRESULT_SUCCEEDED(p->get_Modified(&modified));
    EXPECT_EQ(created, modified);
    VARIANT_BOOL flag = VARIANT_TRUE;
    EXPECT_HRESULT_SUCCEEDED(p->put_Encoding(3));
    EXPECT_HRESULT_SUCCEEDED(p->get_Encode(&flag));
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_HRESULT_SUCCEEDED(p->put_Encode(VARIANT_TRUE));
    EXPECT_HRESULT_SUCCEEDED(p->get_Encoding(&n));
    EXPECT_EQ(n, 1);

    EXPECT_HRESULT_SUCCEEDED(p->put_ValueStr(Text(L"12.5")));
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueLng(&n));
    EXPECT_EQ(n, 12);
    double d = 0;
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueDbl(&d));
    EXPECT_EQ(d, 12.5);
    float f = 0;
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueSng(&f));
    EXPECT_EQ(f, 12.5F);
    short i = 0;
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueInt(&i));
    EXPECT_EQ(i, 12);
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueBoolean(&flag));
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueTrue(*Value::missing(), &flag));
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueTrue(*Value(L"other"), &flag));
    EXPECT_EQ(flag, VARIANT_FALSE);
    Text reference(L"5 Mar 2004");
    EXPECT_HRESULT_SUCCEEDED(p->SetValueStrRef(reference.inOut()));
    DATE date = 0;
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueDate(0x409, 0, &date));
    EXPECT_EQ(date, 38051);
    EXPECT_HRESULT_SUCCEEDED(p->ValueDateSet(38052));
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueType(&n));
    EXPECT_EQ(n, 7);

    EXPECT_HRESULT_SUCCEEDED(p->put_ValueLng(1));
    EXPECT_HRESULT_SUCCEEDED(p->put_ValueInt(2));
    EXPECT_HRESULT_SUCCEEDED(p->put_ValueSng(3));
    EXPECT_HRESULT_SUCCEEDED(p->put_ValueDbl(4));
    EXPECT_HRESULT_SUCCEEDED(p->put_ValueBoolean(VARIANT_TRUE));
    EXPECT_HRESULT_SUCCEEDED(p->get_ValueStr(text.put()));
    EXPECT_EQ(text.str(), L"True");
    EXPECT_HRESULT_SUCCEEDED(p->Dispose());
}

}  // namespace
