// The contract of every class: late binding, errors, identity, enumerators, null pointers, lifetime.

#include <gtest/gtest.h>

#include "Host.h"

using namespace host;

namespace {

// A literal is not a BSTR: the header has no default arguments.
template <class Tag>
concept LeavesTextsOut = requires(Tag tag, BSTR text, long* number) {
    tag.LogError(text, text, number);
};
static_assert(!LeavesTextsOut<_kvTag>);

class Boundary : public testing::Test {
protected:
    ComPtr<_kvTag> tag = newTag();
    ComPtr<_privProperties> list = propertiesOf(tag);
};

TEST_F(Boundary, NamedArguments) {
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"GetValueLng"), const_cast<LPOLESTR>(L"plDefaultValue"),
                        const_cast<LPOLESTR>(L"psName")};
    DISPID ids[3];
    ASSERT_EQ(list->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), S_OK);
    std::vector<Value> arguments = values(9, L"none");
    VARIANT passed[] = {*arguments[0], *arguments[1]};
    DISPPARAMS parameters{passed, ids + 1, 2, 2};
    ScopedVariant result;
    EXPECT_EQ(list->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, result.get(), nullptr, nullptr), S_OK);
    EXPECT_EQ(describe(*result), L"Long 9");
    ids[1] = 7;
    EXPECT_EQ(list->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &parameters, result.get(), nullptr, nullptr),
              DISP_E_PARAMNOTFOUND);
}

TEST_F(Boundary, WrongCallsAreRefused) {
    EXPECT_EQ(get(tag.get(), L"NoSuchMember").code, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(get(get(tag.get(), L"Library").object().get(), L"NoSuchMember").code, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(get(tag.get(), L"Name", values(1)).code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(get(list.get(), L"Add", values(L"x")).code, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(get(list.get(), L"AddLng", values(L"x", L"no number")).code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(get(list.get(), L"AddInt", values(L"x", 70000)).code, DISP_E_OVERFLOW);
    EXPECT_EQ(call(tag.get(), L"Database", DISPATCH_PROPERTYPUTREF, values(5)).code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call(tag.get(), L"Result", DISPATCH_PROPERTYPUT, values(L"x")).code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(call(list.get(), L"Item", DISPATCH_PROPERTYPUT, values(L"none", 7)).code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(get(list.get(), L"Count").text(), L"0");
}

TEST_F(Boundary, TemplatesAreChecked) {
    ComPtr<_kvCheck> checker;
    ASSERT_EQ(CoCreateInstance(CLSID_kvCheck, nullptr, CLSCTX_INPROC_SERVER, IID__kvCheck, checker.putVoid()), S_OK);
    const Text text(L"<KV:TAG>PROPERTY:x:</KV>");
    ComPtr<_privProperties> found;
    ASSERT_EQ(checker->Check(text, *Value(list.get()), found.put()), S_OK);
    EXPECT_EQ(get(found.get(), L"Item", values(1)).text(), L"1:1: error KV301: nothing sets the property x");
    found = {};
    EXPECT_EQ(checker->Check(text, *Value(tag.get()), found.put()), static_cast<HRESULT>(0x800A000D));
    Text comments;
    EXPECT_EQ(checker->Annotate(text, *Value::missing(), comments.put()), static_cast<HRESULT>(0x800A0005));
}

// A variable of any type receives the value that the member sets.
TEST_F(Boundary, ReferencesOfEveryTypeAreWrittenBack) {
    for (const VARTYPE type : {VT_I4, VT_I2, VT_UI1, VT_R4, VT_R8, VT_CY, VT_DECIMAL, VT_BSTR, VT_I8}) {
        EXPECT_EQ(tag->put_Value(Text(L"x\\cell 12345\\row rest")), S_OK);
        for (const bool typed : {true, false}) {
            Value variable = Value(typed ? 21 : 15).to(type);
            VARIANT data = *variable;  // the value of a typed reference
            Value reference = Value::reference(*variable);
            if (typed) {
                reference->vt = VT_BYREF | type;
                reference->byref = type == VT_DECIMAL ? static_cast<void*>(&data) : &data.llVal;
            }
            EXPECT_EQ(get(tag.get(), L"RemoveExtraTrowd", values(1, Value(reference.detach()))).code, S_OK) << type;
            data.vt = type;  // a DECIMAL takes its place
            EXPECT_EQ(text(typed ? data : *variable), L"15") << type << typed;
            if (typed) variable.detach();
            if (typed && type == VT_BSTR) SysFreeString(data.bstrVal);
        }
    }
}

TEST_F(Boundary, NullReferencesAreRefused) {
    for (const VARTYPE type : {VT_VARIANT, VT_BSTR, VT_I4, VT_DISPATCH, VT_DECIMAL, VT_UNKNOWN}) {
        VARIANT null{};
        null.vt = VT_BYREF | type;
        for (const bool nested : {false, true}) {
            const auto argument = [&] { return nested ? Value::reference(null) : Value(ScopedVariant(null).detach()); };
            EXPECT_EQ(get(tag.get(), L"ProtectRTFCode", values(argument())).code, DISP_E_TYPEMISMATCH) << type;
            EXPECT_EQ(get(tag.get(), L"ProcessValue", values(argument())).code, DISP_E_TYPEMISMATCH) << type;
            EXPECT_EQ(get(list.get(), L"GetValue", values(L"x", argument())).code, DISP_E_TYPEMISMATCH) << type;
            for (const WORD flags : {DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
                EXPECT_EQ(call(tag.get(), L"Database", flags, values(argument())).code, DISP_E_TYPEMISMATCH) << type;
            }
        }
    }
}

TEST_F(Boundary, AnObjectThatIsItsOwnValueHasNoText) {
    const auto item = get(list.get(), L"Add", values(L"x", 1)).object();
    EXPECT_EQ(call(item.get(), L"Value", DISPATCH_PROPERTYPUTREF, values(item.get())).code, S_OK);
    EXPECT_EQ(get(list.get(), L"GetValue", values(item.get(), 1)).code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(get(item.get(), L"ValueStr").text(), L"");
    EXPECT_EQ(call(item.get(), L"Value", DISPATCH_PROPERTYPUT, values(1)).code, S_OK);
}

// An engine error reaches late-bound hosts as an exception with the engine's number, and early-bound ones as an
// HRESULT with an error record.
TEST_F(Boundary, ErrorsCarryNumberAndText) {
    // Each level with attributes and children counts its children twice: 2 to the power of the depth.
    ComPtr<IDispatch> level(list.get());
    for (int depth = 0; depth < 34; ++depth) {
        const auto property = get(level.get(), L"Add", values(L"p", 1)).object();
        get(get(property.get(), L"Attributes").object().get(), L"Add", values(L"a", 1));
        level = get(property.get(), L"Properties").object();
    }
    get(level.get(), L"Add", values(L"leaf", 1));
    constexpr auto overflow = static_cast<HRESULT>(0x800A0006);
    const Outcome late = get(list.get(), L"SizeStored");
    EXPECT_EQ(late.code, DISP_E_EXCEPTION);
    EXPECT_EQ(late.raised, overflow);
    EXPECT_EQ(late.description, L"Overflow");

    long size = 5;
    EXPECT_EQ(list->get_SizeStored(&size), overflow);
    EXPECT_EQ(size, 0);
    const auto recorded = [] {
        ComPtr<IErrorInfo> error;
        Text source, description;
        if (GetErrorInfo(0, error.put()) != S_OK) return std::wstring();
        GUID id;
        EXPECT_EQ(error->GetGUID(&id), S_OK);
        EXPECT_TRUE(IsEqualGUID(id, IID__privProperties));
        error->GetSource(source.put());
        error->GetDescription(description.put());
        return source.str() + L": " + description.str();
    };
    EXPECT_EQ(recorded(), L"kvVelmor3: Overflow");
    // A failure without a text leaves no older record.
    EXPECT_EQ(list->get_SizeStored(&size), overflow);
    EXPECT_EQ(tag->get_Result(nullptr), E_POINTER);
    EXPECT_EQ(recorded(), L"");
    const auto support = list.as<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__privProperties), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__kvTag), S_FALSE);
}

TEST_F(Boundary, ClassesAreNamed) {
    EXPECT_EQ(tag->put_Value(Text(L"<KV:A>B:</KV>")), S_OK);
    const std::pair<const wchar_t*, ComPtr<IDispatch>> cases[] = {
        {L"kvTag", ComPtr<IDispatch>(tag.get())},
        {L"kvTags", get(tag.get(), L"Tags").object()},
        {L"privProperties", ComPtr<IDispatch>(list.get())},
        {L"privProperty", get(list.get(), L"Add", values(L"x", 1)).object()},
        {L"kvDirectTag", get(tag.get(), L"Direct").object()},
        {L"kvTagInfo", create(L"kvVelmor3.kvTagInfo")},
        {L"ITag4", create(L"kvVelmor3.ITag4")},
        {L"kvLibrary", get(tag.get(), L"Library").object()},
    };
    for (const auto& [name, object] : cases) {
        ComPtr<ITypeInfo> info;
        Text text;
        const auto provider = object.as<IProvideClassInfo>(IID_IProvideClassInfo);
        ASSERT_TRUE(provider) << name;
        EXPECT_EQ(provider->GetClassInfo(info.put()), S_OK);
        EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, text.put(), nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(text.str(), name);
    }
}

TEST_F(Boundary, NullPointersAreRefused) {
    EXPECT_EQ(tag->get_Result(nullptr), E_POINTER);
    EXPECT_EQ(tag->get_CommandValue(nullptr), E_POINTER);
    EXPECT_EQ(tag->ProtectRTFCode(nullptr), E_POINTER);
    EXPECT_EQ(tag->RemoveExtraTrowd(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(tag->NewTag(nullptr), E_POINTER);
    EXPECT_EQ(list->Build(nullptr, VARIANT_FALSE, VARIANT_FALSE, nullptr), E_POINTER);
    EXPECT_EQ(list->get_NewEnum(nullptr), E_POINTER);
    EXPECT_EQ(list->Add(nullptr, *Value(1), VARIANT_FALSE, nullptr), E_POINTER);
    EXPECT_EQ(tag->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    // A null text is the empty text, a null object is Nothing, an error's number may be omitted.
    EXPECT_EQ(tag->put_Value(nullptr), S_OK);
    EXPECT_EQ(tag->put_Name(nullptr), S_OK);
    EXPECT_EQ(tag->putref_Properties(nullptr), S_OK);
    EXPECT_EQ(tag->LogError(Text(L"H"), nullptr, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(resultOf(tag, L"x"), L"x");
}

ComPtr<IEnumVARIANT> enumeratorOf(const ComPtr<_privProperties>& list) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) get(list.get(), L"Add", values(name, 1));
    ComPtr<IUnknown> items;
    EXPECT_EQ(list->get_NewEnum(items.put()), S_OK);
    return items.as<IEnumVARIANT>(IID_IEnumVARIANT);
}

std::wstring nextName(const ComPtr<IEnumVARIANT>& items) {
    ScopedVariant item;
    return items->Next(1, item.get(), nullptr) == S_OK ? get(item->pdispVal, L"Name").text() : L"end";
}

TEST_F(Boundary, EnumeratorsStepSkipResetAndClone) {
    const auto items = enumeratorOf(list);
    EXPECT_EQ(nextName(items), L"a");
    ComPtr<IEnumVARIANT> clone;
    EXPECT_EQ(items->Clone(clone.put()), S_OK);
    EXPECT_EQ(items->Skip(1), S_OK);
    EXPECT_EQ(nextName(items), L"c");
    EXPECT_EQ(nextName(items), L"end");
    EXPECT_EQ(items->Skip(1), S_FALSE);
    EXPECT_EQ(nextName(clone), L"b");
    EXPECT_EQ(items->Reset(), S_OK);
    VARIANT some[4];
    ULONG fetched = 0;
    EXPECT_EQ(items->Next(4, some, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 3U);
    EXPECT_EQ(some[2].pdispVal, get(list.get(), L"Item", values(L"c")).object().get());
    for (ULONG i = 0; i < fetched; ++i) VariantClear(&some[i]);
    EXPECT_EQ(items->Next(2, some, nullptr), E_POINTER);
    EXPECT_EQ(items->Next(1, nullptr, &fetched), E_POINTER);
}

HRESULT canUnload() {
    const FARPROC entry = GetProcAddress(GetModuleHandleW(L"Velmor3.dll"), "DllCanUnloadNow");
    return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(entry))();
}

TEST(Lifetime, TheDllUnloadsWhenNothingIsHeld) {
    newTag();  // loads it
    EXPECT_EQ(canUnload(), S_OK);
    {
        const auto tag = newTag();
        EXPECT_EQ(canUnload(), S_FALSE);
        const auto enumerator = enumeratorOf(propertiesOf(tag));
        const auto library = get(tag.get(), L"Library").object();
        EXPECT_EQ(resultOf(tag, L"<KV:LEVEL5>X:</KV><KV:NONE>X:</KV><KV:FAILING>X:</KV>"), L"L5[X]");
        EXPECT_EQ(references(tag.get()), 1U);
    }
    EXPECT_EQ(canUnload(), S_OK);

    const auto factoryOf = [] {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(CoGetClassObject(CLSID_kvTag, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.putVoid()),
                  S_OK);
        return factory;
    };
    ComPtr<IUnknown> made;
    EXPECT_EQ(factoryOf()->CreateInstance(factoryOf().get(), IID_IUnknown, made.putVoid()), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factoryOf()->CreateInstance(nullptr, IID_IEnumVARIANT, made.putVoid()), E_NOINTERFACE);
    EXPECT_EQ(factoryOf()->LockServer(TRUE), S_OK);
    EXPECT_EQ(canUnload(), S_FALSE);
    EXPECT_EQ(factoryOf()->LockServer(FALSE), S_OK);
    EXPECT_EQ(canUnload(), S_OK);
}

// Business objects refer to their database, and the tag to both; this is not a cycle.
TEST(Lifetime, HostObjectsAreReleasedWithTheirTag) {
    const auto collection = create(L"VelmorTest.Collection");
    const auto database = create(L"VelmorTest.Database");
    ComPtr<IDispatch> direct, account;
    for (const bool disposes : {false, true}) {
        auto tag = newTag();
        EXPECT_EQ(tag->putref_Variables(collection.get()), S_OK);
        EXPECT_EQ(tag->putref_Database(database.get()), S_OK);
        EXPECT_EQ(resultOf(tag, L"<KV:PROBE>CMD:</KV><KV:LEVEL5>X:</KV>").substr(0, 5), L"kvTag");
        direct = get(tag.get(), L"Direct").object();
        account = get(direct.get(), L"GetObject", values(L"VelmorTest.Account", 1)).object();
        EXPECT_TRUE(get(direct.get(), L"GetObjectItem", values(7, 1)).object());
        get(direct.get(), L"SetObjectName", values(L"x", database.get()));
        if (disposes) {
            get(propertiesOf(tag).get(), L"Add", values(L"circle", tag.get()));
            EXPECT_EQ(tag->Dispose(VARIANT_TRUE), S_OK);
        }
        tag = nullptr;
        // Returned objects stay alive and do not keep the tag.
        EXPECT_FALSE(get(direct.get(), L"GetObjectItem", values(7, 1)).object());
        EXPECT_EQ(references(account.get()), 1U);
        account = nullptr;
        direct = nullptr;
        EXPECT_EQ(references(collection.get()), 1U) << disposes;
        EXPECT_EQ(references(database.get()), 1U) << disposes;
        EXPECT_EQ(canUnload(), S_OK) << disposes;
    }
}

}  // namespace
