// Makes the short letter through the component's vtables:  letter TEMPLATE RESULT
// The program is compiled with the component's header, kvVelmor3.h, and needs no type library.

#include <windows.h>
// clang-format off
#include <ole2.h>
#include <oleauto.h>
// clang-format on

#include <cstdio>
#include <string>

#include "kvVelmor3.h"

namespace {

// A system string for a parameter.
class Text {
public:
    explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    operator BSTR() const noexcept { return text_; }

private:
    BSTR text_;
};

bool add(IDispatch* collection, const wchar_t* name, const wchar_t* value) {
    _privProperties* properties = nullptr;
    _privProperty* added = nullptr;
    const Text nameText(name), valueText(value);
    VARIANT given;
    V_VT(&given) = VT_BSTR;
    V_BSTR(&given) = valueText;
    HRESULT code = collection->QueryInterface(__uuidof(_privProperties), reinterpret_cast<void**>(&properties));
    if (SUCCEEDED(code)) code = properties->Add(nameText, given, VARIANT_TRUE, &added);
    if (added) added->Release();
    if (properties) properties->Release();
    return SUCCEEDED(code);
}

bool addAll(_kvTag& tag) {
    IDispatch* collection = nullptr;
    if (FAILED(tag.get_Properties(&collection))) return false;
    const bool done = add(collection, L"Name", L"Ada Lovelace") && add(collection, L"Item", L"an aneroid barometer");
    collection->Release();
    return done;
}

bool evaluate(_kvTag& tag, _kvLibrary& library, const wchar_t* file, const wchar_t* resultFile) {
    BSTR text = nullptr, result = nullptr;
    VARIANT_BOOL saved = VARIANT_FALSE;
    HRESULT code = library.ReadTextFile(Text(file), &text);
    if (SUCCEEDED(code)) code = tag.put_Value(text);
    if (SUCCEEDED(code)) code = tag.get_Result(&result);
    if (SUCCEEDED(code)) code = library.SaveTextFile(Text(resultFile), result, VARIANT_FALSE, &saved);
    SysFreeString(text);
    SysFreeString(result);
    return SUCCEEDED(code) && saved != VARIANT_FALSE;
}

bool makeLetter(const wchar_t* file, const wchar_t* resultFile) {
    _kvTag* tag = nullptr;
    IDispatch* object = nullptr;
    _kvLibrary* library = nullptr;
    HRESULT code = CoCreateInstance(__uuidof(kvTag), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_kvTag),
                                    reinterpret_cast<void**>(&tag));
    if (SUCCEEDED(code)) code = tag->get_Library(&object);
    if (SUCCEEDED(code)) code = object->QueryInterface(__uuidof(_kvLibrary), reinterpret_cast<void**>(&library));
    const bool done = SUCCEEDED(code) && addAll(*tag) && evaluate(*tag, *library, file, resultFile);
    if (library) library->Release();
    if (object) object->Release();
    if (tag) tag->Release();
    return done;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const auto wide = [](const std::string& text) { return std::wstring(text.begin(), text.end()); };  // ASCII paths
    CoInitialize(nullptr);
    const bool done = makeLetter(wide(arguments[1]).c_str(), wide(arguments[2]).c_str());
    CoUninitialize();
    if (!done) std::puts("The letter was not made");
    return done ? 0 : 1;
}
