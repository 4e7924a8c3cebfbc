#pragma once

#include "platform/win32/ComPtr.h"
#include "platform/win32/FaceRegistry.h"
#include "platform/win32/LateBinding.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/Windows.h"
//
#include <ocidl.h>  // IProvideClassInfo; after windows.h

namespace velmor::platform {

// What every object of ours shows outside: its one identity, a reference count, late binding, and the name of its
// class. Made with one reference, for its maker.
template <class Interface, const IID& interfaceId>
class Face : public Interface, public ISupportErrorInfo, public IProvideClassInfo, public RegisteredFace {
public:
    Face() = default;
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    IDispatch* identity() noexcept final { return static_cast<Interface*>(this); }
    bool addReferenceIfAlive() noexcept final { return references_.addIfAlive(); }

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
        if (left > 0) return left;
        FaceRegistry::instance().remove(*core(), *this);
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
        return findNames(members(), names, count, ids);
    }
    // The object and its face live to the call's end, whatever handlers and the host's objects release meanwhile.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* exception, UINT* faulty) noexcept override {
        const ComPtr<Interface> alive(this);
        return invokeLate(*core(), members(), {id, flags, arguments, result, exception, faulty});
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
        return IsEqualIID(id, interfaceId) || IsEqualIID(id, IID_IDispatch) ? S_OK : S_FALSE;
    }

protected:
    ~Face() override = default;

    virtual MemberNames& members() noexcept = 0;

private:
    ReferenceCount references_;
};

}  // namespace velmor::platform
