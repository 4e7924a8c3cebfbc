#include "com/ClassFactory.h"

namespace velmor::com {

HRESULT ClassFactory::QueryInterface(REFIID id, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

ULONG ClassFactory::AddRef() noexcept {
    return references_.add();
}

ULONG ClassFactory::Release() noexcept {
    const ULONG left = references_.release();
    if (left == 0) delete this;
    return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : served_.create(id, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept {
    lock ? Module::addObject() : Module::removeObject();
    return S_OK;
}

}  // namespace velmor::com
