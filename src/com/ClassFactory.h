#pragma once

#include "com/Module.h"
#include "com/Server.h"
#include "platform/win32/ReferenceCount.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// Makes the objects of one served class.
class ClassFactory final : public IClassFactory {
public:
    // The class must outlive the factory (it is in a table). Made with one reference.
    explicit ClassFactory(const ServedClass& served) noexcept : served_(served) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

private:
    virtual ~ClassFactory() = default;

    const ServedClass& served_;
    platform::ReferenceCount references_;
    KeepsModule keepsModule_;
};

}  // namespace velmor::com
