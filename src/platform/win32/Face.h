#pragma once

#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/LateBinding.h"
#include "platform/win32/Windows.h"
//
#include <ocidl.h>  // IProvideClassInfo; after windows.h

#include "extension/ComObject.h"

namespace velmor::platform {

// What every object of ours shows outside: its one identity, late binding, and the name of its class. A derived class
// tells the names of its members.
template <class Interface>
class Face : public com::ComObject<Interface, ISupportErrorInfo, IProvideClassInfo>,
             public RegisteredFace,
             protected MemberNames {
public:
    IDispatch* identity() noexcept final { return static_cast<Interface*>(this); }
    bool addReferenceIfAlive() noexcept final { return this->references_.addIfAlive(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
        return Base::QueryInterface(IsEqualIID(id, IID_IDispatch) ? __uuidof(Interface) : id, object);
    }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = this->references_.release();
        if (left > 0) return left;
        removeFace(*core(), *this);
        delete this;
        return 0;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (info) *info = nullptr;
        return info ? DISP_E_BADINDEX : E_POINTER;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
        return findNames(*this, names, count, ids);
    }
    // The object and its face live to the call's end, whatever handlers and the host's objects release meanwhile.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* exception, UINT* faulty) noexcept override {
        const ComPtr<Interface> alive(this);
        return invokeLate(*core(), *this, {id, flags, arguments, result, exception, faulty});
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
        return IsEqualIID(id, __uuidof(Interface)) || IsEqualIID(id, IID_IDispatch) ? S_OK : S_FALSE;
    }

private:
    using Base = com::ComObject<Interface, ISupportErrorInfo, IProvideClassInfo>;
};

}  // namespace velmor::platform
