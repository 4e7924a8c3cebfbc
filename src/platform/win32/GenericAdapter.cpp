#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "automation/Errors.h"
#include "automation/Variant.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/FaceRegistry.h"
#include "platform/win32/Faces.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"
#include "text/Compare.h"

// Behind Windows.h, which it needs.
#include <ocidl.h>

namespace velmor::platform {
namespace {

using automation::InvokeKind;
using automation::Variant;

// Names get identifiers on demand: an object answers for its members only when it is called. Of its class it tells the
// name.
class GenericAdapter final : public IDispatch, public IProvideClassInfo, public RegisteredFace {
public:
    explicit GenericAdapter(automation::ObjectRef object) : object_(std::move(object)) {}

    automation::ObjectRef core() const override { return object_; }
    IDispatch* identity() noexcept override { return this; }
    bool addReferenceIfAlive() noexcept override { return references_.addIfAlive(); }

    STDMETHODIMP QueryInterface(REFIID id, void** result) noexcept override {
        if (!result) return E_POINTER;
        *result = nullptr;
        if (id == IID_IUnknown || id == IID_IDispatch) {
            *result = identity();
        } else if (id == IID_IProvideClassInfo) {
            *result = static_cast<IProvideClassInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() noexcept override { return references_.add(); }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        const ULONG left = references_.release();
        if (left > 0) return left;
        FaceRegistry::instance().remove(*object_, *this);
        delete this;
        return 0;
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** result) noexcept override {
        if (result) *result = nullptr;
        return result ? DISP_E_BADINDEX : E_POINTER;
    }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
        if (!names || !ids || count == 0) return E_INVALIDARG;
        try {
            ids[0] = identifierOf(fromWide(names[0]));
        } catch (...) {
            return E_OUTOFMEMORY;
        }
        // The names of arguments are not known.
        for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;
        return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }

    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT*) noexcept override {
        if (result) VariantInit(result);
        if (!parameters) return E_INVALIDARG;
        const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        const bool named = parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
        if (parameters->cNamedArgs > (puts && named ? 1U : 0U)) return DISP_E_NONAMEDARGS;
        try {
            call(id, kindOf(flags), *parameters, result);
            return S_OK;
        } catch (const Error& error) {
            return error.number() == 438 ? DISP_E_MEMBERNOTFOUND : report(error, exception);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }

    STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        try {
            std::wstring name = wide(object_->typeName());
            ComPtr<ICreateTypeLib2> library;
            ComPtr<ICreateTypeInfo> made;
            HRESULT code = CreateTypeLib2(SYS_WIN32, L"", library.put());
            if (SUCCEEDED(code)) code = library->CreateTypeInfo(name.data(), TKIND_COCLASS, made.put());
            return FAILED(code) ? code : made->QueryInterface(IID_ITypeInfo, reinterpret_cast<void**>(info));
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

private:
    static InvokeKind kindOf(WORD flags) {
        if ((flags & DISPATCH_PROPERTYPUTREF) != 0) return InvokeKind::set;
        if ((flags & DISPATCH_PROPERTYPUT) != 0) return InvokeKind::let;
        return (flags & DISPATCH_METHOD) != 0 ? InvokeKind::method : InvokeKind::get;
    }

    // 1, 2, ... : 0 is the default member's.
    DISPID identifierOf(const std::u16string& name) {
        const std::u16string key = lowerCase(name);
        if (const auto known = identifiers_.find(key); known != identifiers_.end()) return known->second;
        names_.push_back(name);
        return identifiers_.emplace(key, static_cast<DISPID>(names_.size())).first->second;
    }

    std::u16string nameOf(DISPID id) const {
        if (id == DISPID_VALUE) return {};
        if (id == DISPID_NEWENUM) return u"NewEnum";
        if (id < 1 || static_cast<std::size_t>(id) > names_.size()) automation::raiseNoSuchMember({});
        return names_[static_cast<std::size_t>(id) - 1];
    }

    void call(DISPID id, InvokeKind kind, DISPPARAMS& parameters, VARIANT* result) {
        const std::u16string name = nameOf(id);
        const std::size_t count = parameters.cArgs;
        std::vector<Variant> arguments;
        for (std::size_t i = count; i-- > 0;) arguments.push_back(fromVariant(parameters.rgvarg[i]));
        const automation::ObjectRef object = object_;  // the call may give our last reference away
        const Variant value = object->invoke(name, kind, arguments);
        for (std::size_t i = 0; i < count; ++i) {
            VARIANT& passed = parameters.rgvarg[count - 1 - i];
            if (V_ISBYREF(&passed)) assignReference(passed, arguments[i]);
        }
        if (result) toVariant(value, *result);
    }

    // Without memory the texts are null.
    static BSTR copyOf(const std::u16string& text) noexcept {
        return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
    }
    static HRESULT report(const Error& error, EXCEPINFO* exception) noexcept {
        if (!exception) return hresultOf(error);
        *exception = {};
        exception->scode = hresultOf(error);
        exception->bstrSource = copyOf(error.source());
        exception->bstrDescription = copyOf(error.description());
        return DISP_E_EXCEPTION;
    }

    automation::ObjectRef object_;
    ReferenceCount references_;
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by lower-case name
    std::vector<std::u16string> names_;                       // by identifier, less 1
};

}  // namespace

IDispatch* adapterOf(const automation::ObjectRef& object) {
    if (!object) return nullptr;
    return FaceRegistry::instance().faceOf(*object, [&] { return std::make_unique<GenericAdapter>(object); });
}

}  // namespace velmor::platform
