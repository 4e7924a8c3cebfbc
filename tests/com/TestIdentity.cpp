// Identity, lifetime, enumerators, and what a null pointer gets.

#include <gtest/gtest.h>

#include "Host.h"

using namespace host;

namespace {

using CanUnload = HRESULT(STDAPICALLTYPE*)();

HRESULT canUnload() {
    const HMODULE component = GetModuleHandleW(L"Velmor3.dll");
    EXPECT_NE(component, nullptr);
    return reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(component, "DllCanUnloadNow")))();
}

ComPtr<_kvTags> tagsOf(const ComPtr<_kvTag>& tag, const wchar_t* value) {
    EXPECT_HRESULT_SUCCEEDED(tag->put_Value(Text(value)));
    ComPtr<_kvTags> tags;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Tags(tags.put()));
    return tags;
}

ComPtr<IEnumVARIANT> enumeratorOf(IDispatch* collection) {
    DISPPARAMS none{};
    ScopedVariant result;
    EXPECT_HRESULT_SUCCEEDED(collection->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                                DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, result.get(), nullptr,
                                                nullptr));
    EXPECT_EQ(result->vt, VT_UNKNOWN);
    return ComPtr<IUnknown>(result->punkVal).as<IEnumVARIANT>(IID_IEnumVARIANT);
}

std::wstring nextName(const ComPtr<IEnumVARIANT>& items) {
    ScopedVariant item;
    return items->Next(1, item.get(), nullptr) == S_OK ? get(item->pdispVal, L"Name").text() : L"end";
}

TEST(Identity, AnObjectHasOneFaceAndComesBackAsItself) {
    const auto tag = newTag();
    const auto properties = propertiesOf(tag);
    EXPECT_EQ(properties.get(), propertiesOf(tag).get());
    const auto tags = tagsOf(tag, L"<KV:A>X:</KV>");
    ComPtr<_kvTag> first, again;
    EXPECT_HRESULT_SUCCEEDED(tags->get_Item(*Value(1), first.put()));
    EXPECT_HRESULT_SUCCEEDED(tags->get_Item(*Value(1.0), again.put()));
    EXPECT_EQ(first.get(), again.get());
    EXPECT_TRUE(same(first.as<ISupportErrorInfo>(IID_ISupportErrorInfo).get(), again.get()));

    // Our own collection passed in is called directly, and is the same one: also by another interface.
    const auto other = newTag();
    EXPECT_HRESULT_SUCCEEDED(other->putref_Properties(properties.get()));
    EXPECT_EQ(propertiesOf(other).get(), properties.get());
    // As a value, too, and through a Variant.
    ComPtr<_privProperty> held;
    EXPECT_HRESULT_SUCCEEDED(properties->Add(Text(L"tag"), *Value(tag.get()), VARIANT_FALSE, held.put()));
    EXPECT_TRUE(same(get(held.get(), L"Value").object().get(), tag.get()));
    EXPECT_HRESULT_SUCCEEDED(properties->RemoveAll());  // the collection held its own tag
}

TEST(Identity, AHostsObjectsComeBackAsThemselves) {
    const auto collection = create(L"VelmorTest.Collection");
    const auto tag = newTag();
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Properties(collection.get()));
    ComPtr<IDispatch> back;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Properties(back.put()));
    EXPECT_TRUE(same(back.get(), collection.get()));
}

TEST(Identity, CoreObjectsOutliveTheirFaces) {
    const auto tag = newTag();
    EXPECT_HRESULT_SUCCEEDED(run(propertiesOf(tag).get(), L"Add", values(L"kept", 5)).code);
    EXPECT_EQ(get(propertiesOf(tag).get(), L"Stored").text(), L"kept=5&:");
    ComPtr<_privProperties> properties;
    {
        const auto passing = newTag();
        properties = propertiesOf(passing);
        EXPECT_HRESULT_SUCCEEDED(run(properties.get(), L"Add", values(L"x", 1)).code);
    }
    EXPECT_EQ(get(properties.get(), L"Count").text(), L"1");
}

TEST(Lifetime, TheDllUnloadsWhenNothingIsHeld) {
    newTag();  // loads it
    EXPECT_EQ(canUnload(), S_OK);
    {
        const auto tag = newTag();
        EXPECT_EQ(canUnload(), S_FALSE);
        const auto tags = tagsOf(tag, L"<KV:A>X:</KV>");
        const auto enumerator = enumeratorOf(tags.get());
        const auto properties = propertiesOf(tag);
        EXPECT_EQ(references(properties.get()), 1U);
        EXPECT_EQ(references(tag.get()), 1U);
        EXPECT_EQ(resultOf(tag, L"<KV:LEVEL5>X:</KV><KV:NONE>X:</KV><KV:FAILING>X:</KV>"), L"L5[X]");
        EXPECT_EQ(references(tag.get()), 1U);
    }
    EXPECT_EQ(canUnload(), S_OK);

    ComPtr<IClassFactory> factory;
    ASSERT_HRESULT_SUCCEEDED(
        CoGetClassObject(CLSID_kvTag, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.putVoid()));
    EXPECT_EQ(canUnload(), S_FALSE);
    EXPECT_HRESULT_SUCCEEDED(factory->LockServer(TRUE));
    ComPtr<IUnknown> aggregated;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, aggregated.putVoid()), CLASS_E_NOAGGREGATION);
    ComPtr<IEnumVARIANT> wrong;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IEnumVARIANT, wrong.putVoid()), E_NOINTERFACE);
    factory = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE);
    ASSERT_HRESULT_SUCCEEDED(
        CoGetClassObject(CLSID_kvTag, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.putVoid()));
    EXPECT_HRESULT_SUCCEEDED(factory->LockServer(FALSE));
    factory = nullptr;
    EXPECT_EQ(canUnload(), S_OK);
}

TEST(Lifetime, HostObjectsAreLetGoWithTheirTag) {
    const auto collection = create(L"VelmorTest.Collection");
    const auto database = create(L"VelmorTest.Database");
    {
        const auto tag = newTag();
        EXPECT_HRESULT_SUCCEEDED(tag->putref_Properties(collection.get()));
        EXPECT_HRESULT_SUCCEEDED(tag->putref_Database(database.get()));
        EXPECT_EQ(resultOf(tag, L"<KV:TAG>SETPROPERTY:a=1:</KV><KV:TAG>PROPERTY:a=:</KV>"), L"1");
    }
    EXPECT_EQ(references(collection.get()), 1U);
    EXPECT_EQ(references(database.get()), 1U);
}

TEST(Enumerator, StepsSkipsResetsAndClones) {
    const auto tag = newTag();
    const auto properties = propertiesOf(tag);
    for (const wchar_t* name : {L"a", L"b", L"c"}) run(properties.get(), L"Add", values(name, 1));
    const auto items = enumeratorOf(properties.get());
    EXPECT_EQ(nextName(items), L"a");
    ComPtr<IEnumVARIANT> clone;
    EXPECT_HRESULT_SUCCEEDED(items->Clone(clone.put()));
    EXPECT_EQ(items->Skip(1), S_OK);
    EXPECT_EQ(nextName(items), L"c");
    EXPECT_EQ(nextName(items), L"end");
    EXPECT_EQ(items->Skip(1), S_FALSE);
    EXPECT_EQ(nextName(clone), L"b");
    EXPECT_HRESULT_SUCCEEDED(items->Reset());
    VARIANT three[4];
    ULONG fetched = 0;
    EXPECT_EQ(items->Next(4, three, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 3U);
    EXPECT_TRUE(same(three[2].pdispVal, get(properties.get(), L"Item", values(L"c")).object().get()));
    for (ULONG i = 0; i < fetched; ++i) VariantClear(&three[i]);
    EXPECT_EQ(items->Next(2, three, nullptr), E_POINTER);
    EXPECT_EQ(items->Next(1, nullptr, &fetched), E_POINTER);
}

TEST(Enumerator, SurvivesRemovalBehindItsBack) {
    const auto properties = propertiesOf(newTag());
    for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) run(properties.get(), L"Add", values(name, 1));
    const auto items = enumeratorOf(properties.get());
    std::wstring met;
    for (std::wstring name = nextName(items); name != L"end"; name = nextName(items)) {
        met += name;
        EXPECT_HRESULT_SUCCEEDED(properties->Remove(*Value(name.c_str())));
    }
    EXPECT_EQ(met, L"abcd");
    EXPECT_EQ(get(properties.get(), L"Count").text(), L"0");
}

TEST(Enumerator, MeetsEveryTag) {
    const auto tag = newTag();
    const auto items = enumeratorOf(tagsOf(tag, L"<KV:A>X:</KV><KV:B>Y:</KV>").get());
    EXPECT_EQ(nextName(items), L"A>X:");
    EXPECT_EQ(nextName(items), L"B>Y:");
    EXPECT_EQ(nextName(items), L"end");
}

TEST(NullPointers, AreRefused) {
    const auto tag = newTag();
    const auto properties = propertiesOf(tag);
    EXPECT_EQ(tag->get_Result(nullptr), E_POINTER);
    EXPECT_EQ(tag->get_Properties(nullptr), E_POINTER);
    EXPECT_EQ(tag->get_CommandValue(nullptr), E_POINTER);
    EXPECT_EQ(tag->ProtectRTFCode(nullptr), E_POINTER);
    EXPECT_EQ(tag->RemoveExtraTrowd(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(tag->NewTag(nullptr), E_POINTER);
    EXPECT_EQ(properties->Build(nullptr, VARIANT_FALSE, VARIANT_FALSE, nullptr), E_POINTER);
    EXPECT_EQ(properties->get_Count(nullptr), E_POINTER);
    EXPECT_EQ(properties->get_NewEnum(nullptr), E_POINTER);
    EXPECT_EQ(properties->Add(nullptr, *Value(1), VARIANT_FALSE, nullptr), E_POINTER);
    EXPECT_EQ(tag->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    // A null text is the empty text, a null object is Nothing.
    EXPECT_HRESULT_SUCCEEDED(tag->put_Value(nullptr));
    EXPECT_HRESULT_SUCCEEDED(tag->put_Name(nullptr));
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Properties(nullptr));
    EXPECT_HRESULT_SUCCEEDED(tag->putref_Database(nullptr));
    EXPECT_EQ(resultOf(tag, L"x"), L"x");
}

}  // namespace
