#pragma once

#include <utility>

#include "com/DispatchService.h"
#include "com/Guard.h"
#include "com/Module.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/Windows.h"
//
#include <ocidl.h>  // IProvideClassInfo; after windows.h

namespace velmor::com {

// What every object of the component has: reference count, the dual interface served late-bound
// from the type library, error records, its class. Made with one reference, for its maker.
template <class Interface, const IID& interfaceId, const CLSID& classId>
class DualObject : public Interface, public ISupportErrorInfo, public IProvideClassInfo {
public:
    DualObject() = default;
    DualObject(const DualObject&) = delete;
    DualObject& operator=(const DualObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, interfaceId)) {
            *object = static_cast<Interface*>(this);
        } else if (IsEqualIID(id, IID_ISupportErrorInfo)) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else if (IsEqualIID(id, IID_IProvideClassInfo)) {
            *object = static_cast<IProvideClassInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = references_.release();
        if (left == 0) released();
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return index == 0 ? giveTypeInfo(interfaceId, info) : DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
        return findNames(interfaceId, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* exception, UINT* faulty) noexcept override {
        return invokeLate(interfaceId, *this, {id, locale, flags, arguments, result, exception, faulty});
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
        return IsEqualIID(id, interfaceId) || IsEqualIID(id, IID_IDispatch) ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override { return giveTypeInfo(classId, info); }

protected:
    virtual ~DualObject() = default;

    // com::guard for the members of the interface. The object lives to the member's end, whatever
    // handlers and the host's objects release meanwhile.
    template <class... Arguments>
    HRESULT guard(Arguments&&... arguments) noexcept {
        const platform::ComPtr<Interface> alive(this);
        return com::guard(interfaceId, std::forward<Arguments>(arguments)...);
    }

    // The last reference is gone.
    virtual void released() noexcept { delete this; }

    platform::ReferenceCount references_;

private:
    KeepsModule keepsModule_;
};

}  // namespace velmor::com
