#include "Host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <regex>

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

Value Value::copyOf(const VARIANT& value) {
    Value copy;
    EXPECT_HRESULT_SUCCEEDED(VariantCopyInd(copy.get(), const_cast<VARIANT*>(&value)));
    return copy;
}

Value Value::missing() {
    Value value;
    value.as(VT_ERROR).scode = DISP_E_PARAMNOTFOUND;
    return value;
}

Value Value::reference(VARIANT& variable) {
    Value value;
    value.as(VT_BYREF | VT_VARIANT).pvarVal = &variable;
    return value;
}

Value Value::to(VARTYPE type) const {
    Value converted;
    EXPECT_HRESULT_SUCCEEDED(VariantChangeType(converted.get(), const_cast<VARIANT*>(get()), VARIANT_ALPHABOOL, type));
    return converted;
}

std::wstring text(const VARIANT& value) {
    const Value converted = Value::copyOf(value).to(VT_BSTR);
    return std::wstring(converted->bstrVal, SysStringLen(converted->bstrVal));
}

std::wstring describe(const VARIANT& value) {
    static const wchar_t* const names[] = {L"Empty",  L"Null",     L"Integer", L"Long",   L"Single",
                                           L"Double", L"Currency", L"Date",    L"String", L"Object",
                                           L"Error",  L"Boolean",  nullptr,    L"Unknown"};
    switch (value.vt) {
        case VT_EMPTY:
        case VT_UNKNOWN:
            return names[value.vt];
        case VT_DISPATCH:
            return value.pdispVal ? L"Object" : L"Nothing";
        case VT_BSTR:
            return L"'" + std::regex_replace(text(value), std::wregex(L"\r\n"), L"|") + L"'";
        case VT_DATE:
            return L"Date " + text(*Value(value.date));
        default:
            return value.vt < std::size(names) ? names[value.vt] + (L" " + text(value)) : L"(array)";
    }
}

std::wstring Outcome::text() const {
    return host::text(*value);
}

ComPtr<IDispatch> Outcome::object() const {
    return value->vt == VT_DISPATCH ? ComPtr<IDispatch>(value->pdispVal) : nullptr;
}

Outcome callWith(const wchar_t* name, WORD flags, std::vector<Value> arguments,
                 const std::function<HRESULT(LPOLESTR*, MEMBERID*)>& find,
                 const std::function<HRESULT(DISPID, DISPPARAMS*, VARIANT*, EXCEPINFO*)>& invoke) {
    Outcome outcome;
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR spelled = const_cast<LPOLESTR>(name);
    outcome.code = find(&spelled, &id);
    if (FAILED(outcome.code)) return outcome;
    std::reverse(arguments.begin(), arguments.end());
    std::vector<VARIANT> passed;
    for (Value& argument : arguments) passed.push_back(*argument);
    DISPID putValue = DISPID_PROPERTYPUT;
    const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{passed.data(), puts ? &putValue : nullptr, static_cast<UINT>(passed.size()), puts ? 1U : 0U};
    EXCEPINFO exception{};
    outcome.code = invoke(id, &parameters, puts ? nullptr : outcome.value.get(), &exception);
    readException(exception, outcome);
    return outcome;
}

Outcome call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments) {
    return callWith(
        name, flags, std::move(arguments),
        [&](LPOLESTR* names, MEMBERID* id) {
            return object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, id);
        },
        [&](DISPID id, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception) {
            return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, parameters, result, exception, nullptr);
        });
}

Outcome get(IDispatch* object, const wchar_t* name, std::vector<Value> arguments) {
    return call(object, name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, std::move(arguments));
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

std::wstring resultOf(const ComPtr<_kvTag>& tag, const wchar_t* value) {
    EXPECT_HRESULT_SUCCEEDED(tag->put_Value(Text(value)));
    Text result;
    EXPECT_HRESULT_SUCCEEDED(tag->get_Result(result.put()));
    return result.str();
}

bool same(IUnknown* left, IUnknown* right) {
    const auto identityOf = [](IUnknown* object) { return ComPtr<IUnknown>(object).as<IUnknown>(IID_IUnknown); };
    return identityOf(left).get() == identityOf(right).get();
}

ULONG references(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

}  // namespace host
