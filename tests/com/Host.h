#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "kvVelmor3.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

// What a C++ host has at hand: texts, values and late-bound calls.
namespace host {

using velmor::platform::ComPtr;
using velmor::platform::ScopedVariant;

// Owns a BSTR.
class Text {
public:
    Text() = default;
    Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    operator BSTR() const noexcept { return text_; }
    BSTR* put() noexcept {
        SysFreeString(text_);
        text_ = nullptr;
        return &text_;
    }
    BSTR* inOut() noexcept { return &text_; }
    std::wstring str() const { return std::wstring(text_ ? text_ : L"", SysStringLen(text_)); }

private:
    BSTR text_ = nullptr;
};

// A VARIANT from what a test writes down.
class Value : public ScopedVariant {
public:
    using ScopedVariant::ScopedVariant;
    Value(const wchar_t* text);
    Value(int number);
    Value(double number);
    Value(bool flag);
    Value(IDispatch* object);
    static Value missing();
    static Value reference(VARIANT& variable);  // as scripts pass their variables
    static Value reference(BSTR& variable);
    static Value reference(long& variable);
};

// A late-bound call's outcome.
struct Outcome {
    HRESULT code = S_OK;
    ScopedVariant value;
    HRESULT raised = S_OK;  // of the exception record
    std::wstring description;

    std::wstring text() const;  // of the value, converted
    ComPtr<IDispatch> object() const;
};

Outcome call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Value> arguments = {});
Outcome get(IDispatch* object, const wchar_t* name, std::vector<Value> arguments = {});
Outcome run(IDispatch* object, const wchar_t* name, std::vector<Value> arguments = {});
HRESULT let(IDispatch* object, const wchar_t* name, std::vector<Value> arguments);
HRESULT set(IDispatch* object, const wchar_t* name, std::vector<Value> arguments);

// Values as an initializer list would copy them.
template <class... Item>
std::vector<Value> values(Item&&... item) {
    std::vector<Value> list;
    (list.emplace_back(std::forward<Item>(item)), ...);
    return list;
}

ComPtr<IDispatch> create(const wchar_t* className);
ComPtr<_kvTag> newTag();
ComPtr<_privProperties> newCollection();  // of a tag that nobody else knows
ComPtr<_privProperties> propertiesOf(const ComPtr<_kvTag>& tag);
std::wstring resultOf(const ComPtr<_kvTag>& tag, const wchar_t* value);

// The same object, as identity goes.
bool same(IUnknown* left, IUnknown* right);

// References to the object, this call's own not counted.
ULONG references(IUnknown* object);

}  // namespace host
