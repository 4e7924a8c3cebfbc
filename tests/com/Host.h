#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kvVelmor3.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"
//
#include "extension/ScopedVariant.h"  // after windows.h

// Helpers of a C++ host: texts, values and calls by name.
namespace host {

using velmor::com::ScopedVariant;
using velmor::platform::ComPtr;

// Owns a BSTR.
class Text {
public:
    Text() = default;
    explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    operator BSTR() const noexcept { return text_; }
    BSTR* put() noexcept { return &text_; }  // once, while it is empty
    std::wstring str() const { return std::wstring(text_ ? text_ : L"", SysStringLen(text_)); }

private:
    BSTR text_ = nullptr;
};

// A VARIANT of a value in a test.
class Value : public ScopedVariant {
public:
    using ScopedVariant::ScopedVariant;
    Value(const wchar_t* text) { as(VT_BSTR).bstrVal = SysAllocString(text); }
    Value(int number) { as(VT_I4).lVal = number; }
    Value(double number) { as(VT_R8).dblVal = number; }
    Value(bool flag) { as(VT_BOOL).boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
    Value(IDispatch* object) { as(VT_DISPATCH).pdispVal = ComPtr<IDispatch>(object).detach(); }
    static Value copyOf(const VARIANT& value);
    static Value missing();
    static Value reference(VARIANT& variable);  // as scripts pass their variables
    // Converted; the test fails if that is impossible.
    Value to(VARTYPE type) const;

private:
    VARIANT& as(VARTYPE type) noexcept {
        get()->vt = type;
        return *get();
    }
};

// A call's outcome.
struct Outcome {
    HRESULT code = S_OK;
    ScopedVariant value;
    HRESULT raised = S_OK;  // of the exception record
    std::wstring description;

    std::wstring text() const;  // of the value
    ComPtr<IDispatch> object() const;
};

std::wstring text(const VARIANT& value);  // converted
// Type and value, as the script tests print them: "Long 5", "'text'" with | for a line end.
std::wstring describe(const VARIANT& value);

// A call of IDispatch::Invoke or ITypeInfo::Invoke, which differ in the object only.
Outcome callWith(const wchar_t* name, WORD flags, std::vector<Value> arguments,
                 const std::function<HRESULT(LPOLESTR*, MEMBERID*)>& find,
                 const std::function<HRESULT(DISPID, DISPPARAMS*, VARIANT*, EXCEPINFO*)>& invoke);
Outcome call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments = {});
Outcome get(IDispatch* object, const wchar_t* name, std::vector<Value> arguments = {});

// Moves values; an initializer list would copy them.
template <class... Item>
std::vector<Value> values(Item&&... item) {
    std::vector<Value> list;
    (list.emplace_back(std::forward<Item>(item)), ...);
    return list;
}

ComPtr<IDispatch> create(const wchar_t* className);
ComPtr<_kvTag> newTag();
ComPtr<_privProperties> propertiesOf(const ComPtr<_kvTag>& tag);
std::wstring resultOf(const ComPtr<_kvTag>& tag, const wchar_t* value);

// Whether both are the same COM object.
bool same(IUnknown* left, IUnknown* right);

// References to the object, without that of this call.
ULONG references(IUnknown* object);

}  // namespace host
