#include "Host.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace host {

namespace {

// Every test runs in one apartment, as a host's user interface does.
class Apartment : public testing::Environment {
public:
    void SetUp() override { ASSERT_GE(OleInitialize(nullptr), 0); }
    void TearDown() override { OleUninitialize(); }
};

const auto* const apartment = testing::AddGlobalTestEnvironment(new Apartment);

void readException(EXCEPINFO& exception, Outcome& outcome) {
    outcome.raised = exception.scode;
    if (exception.bstrDescription) outcome.description = exception.bstrDescription;
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace

Value::Value(const wchar_t* text) {
    get()->vt = VT_BSTR;
    get()->bstrVal = SysAllocString(text);
}

Value::Value(int number) {
    get()->vt = VT_I4;
    get()->lVal = number;
}

Value::Value(double number) {
    get()->vt = VT_R8;
    get()->dblVal = number;
}

Value::Value(bool flag) {
    get()->vt = VT_BOOL;
    get()->boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Value::Value(IDispatch* object) {
    get()->vt = VT_DISPATCH;
    get()->pdispVal = object;
    if (object) object->AddRef();
}

Value Value::missing() {
    Value value;
    value->vt = VT_ERROR;
    value->scode = DISP_E_PARAMNOTFOUND;
    return value;
}

Value Value::reference(VARIANT& variable) {
    Value value;
    value->vt = VT_BYREF | VT_VARIANT;
    value->pvarVal = &variable;
    return value;
}

Value Value::reference(BSTR& variable) {
    Value value;
    value->vt = VT_BYREF | VT_BSTR;
    value->pbstrVal = &variable;
    return value;
}

Value Value::reference(long& variable) {
    Value value;
    value->vt = VT_BYREF | VT_I4;
    value->plVal = &variable;
    return value;
}

std::wstring Outcome::text() const {
    ScopedVariant converted;
    VARIANT copy = *value;
    if (FAILED(VariantChangeType(converted.get(), &copy, VARIANT_ALPHABOOL, VT_BSTR))) return L"(no text)";
    return std::wstring(converted->bstrVal, SysStringLen(converted->bstrVal));
}

ComPtr<IDispatch> Outcome::object() const {
    return value->vt == VT_DISPATCH ? ComPtr<IDispatch>(value->pdispVal) : nullptr;
}

Outcome call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments) {
    Outcome outcome;
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR spelled = const_cast<LPOLESTR>(name);
    outcome.code = object->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.code)) return outcome;
    std::reverse(arguments.begin(), arguments.end());
    std::vector<VARIANT> passed;
    for (Value& argument : arguments) passed.push_back(*argument);
    DISPID putValue = DISPID_PROPERTYPUT;
    const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{passed.data(), puts ? &putValue : nullptr, static_cast<UINT>(passed.size()), puts ? 1U : 0U};
    EXCEPINFO exception{};
    outcome.code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                  puts ? nullptr : outcome.value.get(), &exception, nullptr);
    readException(exception, outcome);
    return outcome;
}

Outcome get(IDispatch* object, const wchar_t* name, std::vector<Value> arguments) {
    return call(object, name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, std::move(arguments));
}

Outcome run(IDispatch* object, const wchar_t* name, std::vector<Value> arguments) {
    return call(object, name, DISPATCH_METHOD, std::move(arguments));
}

HRESULT let(IDispatch* object, const wchar_t* name, std::vector<Value> arguments) {
    return call(object, name, DISPATCH_PROPERTYPUT, std::move(arguments)).code;
}

HRESULT set(IDispatch* object, const wchar_t* name, std::vector<Value> arguments) {
    return call(object, name, DISPATCH_PROPERTYPUTREF, std::move(arguments)).code;
}

ComPtr<IDispatch> create(const wchar_t* className) {
    CLSID id;
    EXPECT_HRESULT_SUCCEEDED(CLSIDFromProgID(className, &id));
    ComPtr<IDispatch> object;
    EXPECT_HRESULT_SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.putVoid()));
    return object;
}

ComPtr<_kvTag> newTag() {
    return create(L"kvVelmor3.kvTag").as<_kvTag>(IID__kvTag);
}

ComPtr<_privProperties> propertiesOf(const ComPtr<_kvTag>& tag) {
    ComPtr<IDispatch> properties;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Properties(properties.put()));
    return properties.as<_privProperties>(IID__privProperties);
}

ComPtr<_privProperties> newCollection() {
    return propertiesOf(newTag());
}

std::wstring resultOf(const ComPtr<_kvTag>& tag, const wchar_t* value) {
    EXPECT_HRESULT_SUCCEEDED(tag->put_Value(Text(value)));
    Text result;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Result(result.put()));
    return result.str();
}

bool same(IUnknown* left, IUnknown* right) {
    const auto first = ComPtr<IUnknown>(left).as<IUnknown>(IID_IUnknown);
    const auto second = ComPtr<IUnknown>(right).as<IUnknown>(IID_IUnknown);
    return first.get() == second.get();
}

ULONG references(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

}  // namespace host
