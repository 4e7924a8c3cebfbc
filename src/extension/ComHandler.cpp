// The handlers of a library as COM classes: class factory, registration, and the calls in both directions.
// velmor_handler() adds this file to a library for Windows. It needs the system's headers and <velmor/handler.h> alone.

#include <windows.h>
// clang-format off
#include <ole2.h>
#include <oleauto.h>
#include <shlwapi.h>
// clang-format on
#include <velmor/handler.h>

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "ClassRegistry.h"
#include "ComObject.h"
#include "ErrorNumbers.h"
#include "ScopedVariant.h"

extern "C" const VelmorHandlerLibrary* velmorHandlerLibrary(std::int32_t version);

namespace {

using velmor::com::ClassRegistry;
using velmor::com::errorNumberOf;
using velmor::com::RegisteredClass;
using velmor::com::resultOf;
using velmor::com::ScopedVariant;
using velmor::handler::detail::equal;
using velmor::handler::detail::lent;
using velmor::handler::detail::members;
using velmor::handler::detail::viewOf;

constexpr std::int32_t automationError = 440;

const VelmorHandlerLibrary& ownLibrary() {
    return *velmorHandlerLibrary(VELMOR_HANDLER_ABI);
}
std::span<const VelmorHandlerClass> ownClasses() {
    return {ownLibrary().classes, ownLibrary().classCount};
}

std::wstring wide(VelmorText text) {
    const std::u16string_view view = viewOf(text);
    return {view.begin(), view.end()};
}

std::u16string_view viewOf(const wchar_t* text) {
    return {reinterpret_cast<const char16_t*>(text), std::wcslen(text)};
}
BSTR bstrOf(std::u16string_view text) {
    static_assert(sizeof(OLECHAR) == sizeof(char16_t));
    return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
}

// Values of the host for the handler. A text is the system's string, an object counts as one reference.

class LentObject : public VelmorObject {
public:
    explicit LentObject(IDispatch* dispatch);
    LentObject(const LentObject&) = delete;
    LentObject& operator=(const LentObject&) = delete;
    ~LentObject() { dispatch_->Release(); }

    IDispatch* dispatch() const noexcept { return dispatch_; }

private:
    IDispatch* dispatch_;
};

void release(VelmorValue* value) noexcept {
    if (value->type == VELMOR_TEXT) {
        SysFreeString(reinterpret_cast<BSTR>(const_cast<char16_t*>(value->text.units)));
    } else if (value->type == VELMOR_OBJECT) {
        delete static_cast<LentObject*>(value->object);
    }
    *value = {};
}

void takeText(BSTR text, VelmorValue& value) {
    value = {VELMOR_TEXT, 0, {reinterpret_cast<const char16_t*>(text), SysStringLen(text)}, nullptr};
}

HRESULT takeObject(IUnknown* unknown, VelmorValue& value) {
    if (unknown == nullptr) return S_OK;
    IDispatch* dispatch = nullptr;
    const HRESULT code = unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch));
    if (FAILED(code)) return DISP_E_TYPEMISMATCH;
    auto* const object = new (std::nothrow) LentObject(dispatch);
    if (object != nullptr) {
        value = {VELMOR_OBJECT, 0, {}, object};
        return S_OK;
    }
    dispatch->Release();
    return E_OUTOFMEMORY;
}

// Takes the variant's text; the variant is cleared.
HRESULT take(VARIANT& variant, VelmorValue& value) {
    HRESULT code = S_OK;
    value = {};
    switch (V_VT(&variant)) {
        case VT_BSTR:
            takeText(V_BSTR(&variant), value);
            V_VT(&variant) = VT_EMPTY;
            break;
        case VT_BOOL:
            value = {VELMOR_TRUTH, V_BOOL(&variant) != VARIANT_FALSE ? 1.0 : 0.0, {}, nullptr};
            break;
        case VT_DATE:
            value = {VELMOR_DATE, V_DATE(&variant), {}, nullptr};
            break;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            code = takeObject(V_UNKNOWN(&variant), value);
            break;
        case VT_EMPTY:
        case VT_NULL:
        case VT_ERROR:
            break;
        default:
            if (SUCCEEDED(VariantChangeType(&variant, &variant, 0, VT_R8))) {
                value = {VELMOR_NUMBER, V_R8(&variant), {}, nullptr};
            }
    }
    VariantClear(&variant);
    return code;
}

// A variant of its own; E_OUTOFMEMORY for a text, DISP_E_TYPEMISMATCH for an object that is not the host's.
HRESULT give(const VelmorValue& value, VARIANT& variant);

// Calls of the host's objects

std::int32_t failed(HRESULT code, EXCEPINFO& exception, VelmorValue& result) {
    std::int32_t number = errorNumberOf(code);
    if (code == DISP_E_EXCEPTION) {
        if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
        number = exception.scode != 0 ? errorNumberOf(exception.scode) : exception.wCode;
        if (exception.bstrDescription != nullptr) takeText(exception.bstrDescription, result);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
    }
    return number == 0 ? automationError : number;
}

HRESULT call(IDispatch& dispatch, std::int32_t kind, VelmorText member, std::span<const VelmorValue> arguments,
             VARIANT* result, EXCEPINFO& exception) {
    constexpr std::size_t most = 16;
    VARIANT values[most];
    if (arguments.size() > most) return DISP_E_BADPARAMCOUNT;
    std::wstring name = wide(member);
    wchar_t* names[] = {name.data()};
    DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
    HRESULT code = dispatch.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    const UINT count = static_cast<UINT>(arguments.size());
    for (UINT i = 0; i < count; ++i) {  // in reverse order
        VariantInit(&values[i]);
        if (SUCCEEDED(code)) code = give(arguments[count - 1 - i], values[i]);
    }
    const bool puts = kind == VELMOR_LET || kind == VELMOR_SET;
    const WORD putFlag = kind == VELMOR_SET ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters{values, puts ? &put : nullptr, count, puts ? 1u : 0u};
    if (SUCCEEDED(code)) {
        const WORD flags = puts ? putFlag : static_cast<WORD>(DISPATCH_METHOD | DISPATCH_PROPERTYGET);
        code = dispatch.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, puts ? nullptr : result,
                               &exception, nullptr);
    }
    for (UINT i = 0; i < count; ++i) VariantClear(&values[i]);
    return code;
}

std::int32_t invoke(VelmorObject* object, std::int32_t kind, VelmorText member, const VelmorValue* arguments,
                    std::size_t count, VelmorValue* result) noexcept {
    *result = {};
    try {
        ScopedVariant given;
        EXCEPINFO exception{};
        HRESULT code = call(*static_cast<LentObject*>(object)->dispatch(), kind, member, {arguments, count},
                            given.get(), exception);
        if (SUCCEEDED(code)) code = take(*given.get(), *result);
        return SUCCEEDED(code) ? 0 : failed(code, exception, *result);
    } catch (const std::bad_alloc&) {
        return errorNumberOf(E_OUTOFMEMORY);
    }
}

std::int32_t convert(VelmorObject*, const VelmorValue* value, std::int32_t type, VelmorValue* result) noexcept {
    constexpr VARTYPE types[] = {VT_EMPTY, VT_BSTR, VT_R8, VT_DATE, VT_BOOL};
    *result = {};
    if (type < VELMOR_TEXT || type > VELMOR_TRUTH) return errorNumberOf(E_INVALIDARG);
    ScopedVariant given;
    HRESULT code = give(*value, *given.get());
    if (SUCCEEDED(code)) code = VariantChangeType(given.get(), given.get(), VARIANT_ALPHABOOL, types[type]);
    if (SUCCEEDED(code)) code = take(*given.get(), *result);
    return SUCCEEDED(code) ? 0 : errorNumberOf(code);
}

constexpr VelmorObjectFunctions objectFunctions{&invoke, &convert, &release};

LentObject::LentObject(IDispatch* dispatch) : VelmorObject{&objectFunctions}, dispatch_(dispatch) {}

HRESULT give(const VelmorValue& value, VARIANT& variant) {
    constexpr VARTYPE types[] = {VT_EMPTY, VT_BSTR, VT_R8, VT_DATE, VT_BOOL, VT_DISPATCH};
    VariantInit(&variant);
    switch (value.type) {
        case VELMOR_TEXT:
            V_BSTR(&variant) = bstrOf(viewOf(value.text));
            if (V_BSTR(&variant) == nullptr) return E_OUTOFMEMORY;
            break;
        case VELMOR_NUMBER:
        case VELMOR_DATE:
            V_R8(&variant) = value.number;
            break;
        case VELMOR_TRUTH:
            V_BOOL(&variant) = value.number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
            break;
        case VELMOR_OBJECT:
            if (value.object == nullptr || value.object->functions != &objectFunctions) return DISP_E_TYPEMISMATCH;
            V_DISPATCH(&variant) = static_cast<LentObject*>(value.object)->dispatch();
            V_DISPATCH(&variant)->AddRef();
            break;
        default:
            return S_OK;
    }
    V_VT(&variant) = types[value.type];
    return S_OK;
}

// The handler as the host sees it: its members are called by name.
class HandlerObject final : public velmor::com::ComObject<IDispatch> {
public:
    explicit HandlerObject(const VelmorHandlerClass& described) : class_(described) {}

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
        if (count == nullptr) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (info != nullptr) *info = nullptr;
        return DISP_E_BADINDEX;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
        if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
        std::fill_n(ids, count, DISPID_UNKNOWN);
        for (std::size_t i = 0; i < std::size(members); ++i) {
            if (equal(members[i], viewOf(names[0]))) ids[0] = static_cast<DISPID>(i + 1);
        }
        return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT*) noexcept override {
        const bool isKnown = id >= 1 && id <= static_cast<DISPID>(std::size(members));
        if (!isKnown || (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
        if (parameters == nullptr) return E_INVALIDARG;
        VelmorValue values[mostArguments];
        const UINT count = parameters->cArgs;
        HRESULT code = takeArguments(*parameters, values);
        if (SUCCEEDED(code)) code = callClass(members[id - 1], {values, count}, result, exception);
        for (VelmorValue& value : values) release(&value);
        return code;
    }

private:
    static constexpr UINT mostArguments = 8;

    // In the order of the member.
    static HRESULT takeArguments(const DISPPARAMS& parameters, VelmorValue (&values)[mostArguments]) {
        std::fill(std::begin(values), std::end(values), VelmorValue{});
        if (parameters.cArgs > mostArguments) return DISP_E_BADPARAMCOUNT;
        HRESULT code = S_OK;
        for (UINT i = 0; i < parameters.cArgs && SUCCEEDED(code); ++i) {
            ScopedVariant copy;
            code = VariantCopyInd(copy.get(), &parameters.rgvarg[parameters.cArgs - 1 - i]);
            if (SUCCEEDED(code)) code = take(*copy.get(), values[i]);
        }
        return code;
    }

    HRESULT callClass(std::u16string_view member, std::span<const VelmorValue> arguments, VARIANT* result,
                      EXCEPINFO* exception) const {
        VelmorValue answer{};
        const std::int32_t number = class_.invoke(lent(member), arguments.data(), arguments.size(), &answer);
        HRESULT code = S_OK;
        if (number == 0) {
            if (result != nullptr) code = give(answer, *result);
        } else {
            code = DISP_E_EXCEPTION;
            if (exception != nullptr) *exception = exceptionOf(number, viewOf(answer.text));
        }
        ownLibrary().release(&answer);
        return code;
    }

    EXCEPINFO exceptionOf(std::int32_t number, std::u16string_view description) const {
        EXCEPINFO exception{};
        exception.scode = resultOf(number);
        exception.bstrSource = bstrOf(viewOf(class_.name));
        if (!description.empty()) exception.bstrDescription = bstrOf(description);
        return exception;
    }

    const VelmorHandlerClass& class_;
};

// Registration, for all users or the current one. The handlers' entries are the machine's, and apart for programs of 32
// and of 64 bits as class identifiers are.

constexpr wchar_t handlers[] = L"SOFTWARE\\Korvane\\Quillmark\\Handlers";

RegisteredClass registeredClass(const VelmorHandlerClass& described) {
    return {wide(described.identifier), {wide(described.name)}, wide(described.description)};
}

void writeEntry(ClassRegistry& classes, const VelmorHandlerClass& described) {
    if (described.handler.length == 0 || !classes.isMachine()) return;
    classes.setValue(handlers, wide(described.handler).c_str(), wide(described.name));
}

// The handler's entry if it still names this class, and the keys that are empty then.
void removeEntry(ClassRegistry& classes, const VelmorHandlerClass& described) {
    if (described.handler.length == 0 || !classes.isMachine()) return;
    const std::wstring handler = wide(described.handler);
    wchar_t named[256] = L"";
    DWORD bytes = sizeof named;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, handlers, handler.c_str(), RRF_RT_REG_SZ, nullptr, named, &bytes) !=
            ERROR_SUCCESS ||
        wide(described.name) != named) {
        return;
    }
    classes.takeStatus(RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, handlers, handler.c_str()));
    for (std::wstring key = handlers; key.find(L'\\') != key.npos; key.erase(key.rfind(L'\\'))) {
        SHDeleteEmptyKeyW(HKEY_LOCAL_MACHINE, key.c_str());
    }
}

void unregisterClasses(ClassRegistry& classes) {
    for (const VelmorHandlerClass& described : ownClasses()) {
        removeEntry(classes, described);
        classes.remove(registeredClass(described));
    }
}

// All or nothing.
void registerClasses(ClassRegistry& classes) {
    for (const VelmorHandlerClass& described : ownClasses()) {
        classes.write(registeredClass(described));
        writeEntry(classes, described);
    }
    if (FAILED(classes.outcome())) unregisterClasses(classes);
}

HRESULT changeRegistration(bool install, HKEY root) noexcept {
    try {
        ClassRegistry classes(root);
        install ? registerClasses(classes) : unregisterClasses(classes);
        return classes.outcome();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

bool hasIdentifier(const VelmorHandlerClass& described, REFCLSID id) {
    CLSID own{};
    return SUCCEEDED(CLSIDFromString(wide(described.identifier).c_str(), &own)) && IsEqualCLSID(own, id);
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    for (const VelmorHandlerClass& described : ownClasses()) {
        if (!hasIdentifier(described, classId)) continue;
        const auto make = [&described](REFIID wanted, void** made) noexcept {
            return velmor::com::giveNew(new (std::nothrow) HandlerObject(described), wanted, made);
        };
        return velmor::com::giveNew(new (std::nothrow) velmor::com::ClassFactory(make), id, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
    return velmor::com::ReferenceCount::objects == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    return changeRegistration(true, HKEY_LOCAL_MACHINE);
}

STDAPI DllUnregisterServer() {
    return changeRegistration(false, HKEY_LOCAL_MACHINE);
}

// "regsvr32 /n /i:user": for the current user alone, without the handler's entry, which only the machine has.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    const bool forUser = command != nullptr && *command != L'\0';
    if (forUser && _wcsicmp(command, L"user") != 0) return E_INVALIDARG;
    return changeRegistration(install != FALSE, forUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE);
}
