// IDispatch, as hosts and scripts without the type library use it.

#include <gtest/gtest.h>

#include "Host.h"

using namespace host;

namespace {

class LateBinding : public testing::Test {
protected:
    ComPtr<IDispatch> tag = create(L"kvVelmor3.kvTag");
    ComPtr<IDispatch> properties = get(tag.get(), L"Properties").object();
};

TEST_F(LateBinding, OptionalArgumentsTakeTheirDefaults) {
    EXPECT_EQ(get(tag.get(), L"GetProcessedPropertiesValue", values(L"none")).text(), L"");
    EXPECT_EQ(get(tag.get(), L"GetProcessedElementsValue", values(L"none")).text(), L"");
    EXPECT_EQ(get(tag.get(), L"GetProcessedVariablesValue", values(L"none", Value::missing())).text(), L"");
    EXPECT_HRESULT_SUCCEEDED(run(properties.get(), L"Add", values(L"d", L"5 Mar 2004")).code);
    EXPECT_EQ(get(properties.get(), L"GetValue", values(L"none")).value->vt, VT_EMPTY);
    EXPECT_EQ(get(properties.get(), L"GetValueDbl", values(L"none")).text(), L"0");
    EXPECT_EQ(get(properties.get(), L"GetValueDate", values(L"none")).value->vt, VT_DATE);
    EXPECT_EQ(get(properties.get(), L"GetValueObject", values(L"none")).value->vt, VT_DISPATCH);
    const auto property = get(properties.get(), L"Item", values(L"d")).object();
    EXPECT_EQ(get(property.get(), L"ValueDate").value->date, 38051);
    EXPECT_EQ(get(property.get(), L"ValueTrue").text(), L"False");
    EXPECT_HRESULT_SUCCEEDED(run(properties.get(), L"Build", values(L"x=1:")).code);
    EXPECT_EQ(get(properties.get(), L"Stored").text(), L"x=1&:");
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"LogError", values(L"H", L"text")).code);
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"Dispose").code);
}

TEST_F(LateBinding, ByReferenceTextsComeBackChanged) {
    Text typed(L"a{");
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"ProtectRTFCode", values(Value::reference(*typed.inOut()))).code);
    EXPECT_EQ(typed.str(), L"a\\{");

    Value variable(L"a{");
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"ProtectRTFCode", values(Value::reference(*variable))).code);
    EXPECT_STREQ(variable->bstrVal, L"a\\{");

    // A variable of another type is converted, and keeps its type when the text stays the same.
    Value number(12);
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"ProtectRTFCode", values(Value::reference(*number))).code);
    EXPECT_EQ(number->vt, VT_I4);

    Value empty;
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"ProtectRTFCode", values(Value::reference(*empty))).code);
    EXPECT_EQ(empty->vt, VT_EMPTY);
    EXPECT_HRESULT_SUCCEEDED(run(tag.get(), L"ProtectRTFCode", values(L"by value {")).code);
}

TEST_F(LateBinding, ByReferenceNumbersComeBackChanged) {
    EXPECT_HRESULT_SUCCEEDED(let(tag.get(), L"Value", values(L"x\\cell 12345\\row rest")));
    long start = 1;
    Value end(21.0);  // a Double, as scripts have them
    EXPECT_HRESULT_SUCCEEDED(
        run(tag.get(), L"RemoveExtraTrowd", values(Value::reference(start), Value::reference(*end))).code);
    ASSERT_EQ(end->vt, VT_I4);
    EXPECT_EQ(end->lVal, 15);
}

TEST_F(LateBinding, DefaultMembersAnswerForTheirObject) {
    EXPECT_HRESULT_SUCCEEDED(run(properties.get(), L"Add", values(L"x", 5)).code);
    EXPECT_EQ(get(get(tag.get(), L"Properties", values(L"x")).object().get(), L"Value").text(), L"5");
    EXPECT_EQ(get(tag.get(), L"Properties", values(L"x")).text(), L"5");  // by the property's own default
    EXPECT_HRESULT_SUCCEEDED(let(tag.get(), L"Properties", values(L"x", 6)));
    EXPECT_HRESULT_SUCCEEDED(let(properties.get(), L"Item", values(1, 7)));
    EXPECT_EQ(get(properties.get(), L"Stored").text(), L"x=7&:");
    EXPECT_EQ(let(properties.get(), L"Item", values(L"none", 7)), DISP_E_MEMBERNOTFOUND);
}

TEST_F(LateBinding, ObjectsAreTakenByLetAndBySet) {
    const auto database = create(L"VelmorTest.Database");
    for (const auto put : {&let, &set}) {
        EXPECT_HRESULT_SUCCEEDED(put(tag.get(), L"Database", values(database.get())));
        EXPECT_TRUE(same(get(tag.get(), L"Database").object().get(), database.get()));
        EXPECT_HRESULT_SUCCEEDED(put(tag.get(), L"Database", values(static_cast<IDispatch*>(nullptr))));
        EXPECT_FALSE(get(tag.get(), L"Database").object());
    }
}

TEST_F(LateBinding, NamedArguments) {
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"GetValueLng"), const_cast<LPOLESTR>(L"plDefaultValue"),
                        const_cast<LPOLESTR>(L"psName")};
    DISPID ids[3];
    ASSERT_HRESULT_SUCCEEDED(properties->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids));
    std::vector<Value> arguments = values(9, L"none");
    VARIANT passed[] = {*arguments[0], *arguments[1]};
    DISPPARAMS parameters{passed, ids + 1, 2, 2};
    ScopedVariant result;
    EXPECT_HRESULT_SUCCEEDED(properties->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                                result.get(), nullptr, nullptr));
    EXPECT_EQ(result->lVal, 9);
}

TEST_F(LateBinding, WrongCallsAreRefused) {
    EXPECT_EQ(run(tag.get(), L"NoSuchMember").code, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(get(tag.get(), L"Name", values(1)).code, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(run(properties.get(), L"Add", values(L"x")).code, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(run(properties.get(), L"AddLng", values(L"x", L"no number")).code, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(run(properties.get(), L"AddInt", values(L"x", 70000)).code, DISP_E_OVERFLOW);
    EXPECT_EQ(set(tag.get(), L"Database", values(5)), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(let(tag.get(), L"Result", values(L"x")), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(get(properties.get(), L"Count").text(), L"0");
}

// An engine error reaches late-bound hosts as an exception with the engine's number, and early-bound
// ones as an HRESULT with an error record.
TEST_F(LateBinding, ErrorsCarryNumberAndText) {
    // Each level with attributes and children counts its children twice: 2 to the power of the depth.
    ComPtr<IDispatch> level = properties;
    for (int depth = 0; depth < 34; ++depth) {
        const auto property = run(level.get(), L"Add", values(L"p", 1)).object();
        run(get(property.get(), L"Attributes").object().get(), L"Add", values(L"a", 1));
        level = get(property.get(), L"Properties").object();
    }
    run(level.get(), L"Add", values(L"leaf", 1));
    const Outcome late = get(properties.get(), L"SizeStored");
    EXPECT_EQ(late.code, DISP_E_EXCEPTION);
    EXPECT_EQ(late.raised, static_cast<HRESULT>(0x800A0006));
    EXPECT_EQ(late.description, L"Overflow");

    const auto early = properties.as<_privProperties>(IID__privProperties);
    long size = 5;
    EXPECT_EQ(early->get_SizeStored(&size), static_cast<HRESULT>(0x800A0006));
    EXPECT_EQ(size, 0);
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.put()), S_OK);
    Text description;
    EXPECT_HRESULT_SUCCEEDED(error->GetDescription(description.put()));
    EXPECT_EQ(description.str(), L"Overflow");
    const auto support = early.as<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__privProperties), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__kvTag), S_FALSE);
}

TEST_F(LateBinding, ClassesAreNamed) {
    const auto name = [](IDispatch* object) {
        const auto provider = ComPtr<IDispatch>(object).as<IProvideClassInfo>(IID_IProvideClassInfo);
        ComPtr<ITypeInfo> info;
        EXPECT_HRESULT_SUCCEEDED(provider->GetClassInfo(info.put()));
        Text text;
        EXPECT_HRESULT_SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, text.put(), nullptr, nullptr, nullptr));
        return text.str();
    };
    EXPECT_HRESULT_SUCCEEDED(let(tag.get(), L"Value", values(L"<KV:A>B:</KV>")));
    EXPECT_EQ(name(tag.get()), L"kvTag");
    EXPECT_EQ(name(get(tag.get(), L"Tags").object().get()), L"kvTags");
    EXPECT_EQ(name(properties.get()), L"privProperties");
    EXPECT_EQ(name(run(properties.get(), L"Add", values(L"x", 1)).object().get()), L"privProperty");
    EXPECT_EQ(name(create(L"kvVelmor3.ITag4").get()), L"ITag4");
}

TEST(EmptyHandler, AnswersWithNothing) {
    const auto handler = create(L"kvVelmor3.ITag4").as<_ITag4>(IID__ITag4);
    long level = -1;
    EXPECT_HRESULT_SUCCEEDED(handler->get_Interface(&level));
    EXPECT_EQ(level, 0);
    const auto answers = [&](const wchar_t* name, std::vector<Value> arguments) {
        const Outcome outcome = get(handler.get(), name, std::move(arguments));
        EXPECT_HRESULT_SUCCEEDED(outcome.code) << name;
        EXPECT_EQ(outcome.value->vt, VT_BSTR) << name;
        return outcome.text();
    };
    Value database(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(answers(L"CommandList", {}), L"");
    EXPECT_EQ(answers(L"ParameterList", values(L"C")), L"");
    EXPECT_EQ(answers(L"SyntaxString", values(L"C", L"H")), L"");
    EXPECT_EQ(answers(L"CommandDescription", values(L"C", L"H", Value::reference(*database))), L"");
    EXPECT_EQ(answers(L"ParameterValueList", values(L"C", L"P")), L"");
    Text text;
    EXPECT_HRESULT_SUCCEEDED(handler->GetTagValue(newTag().get(), text.put()));
    EXPECT_EQ(text.str(), L"");
}

}  // namespace
