#include "com/TypeLibrary.h"

#include <atomic>

#include "com/Guard.h"
#include "platform/win32/ComPtr.h"
//
#include "extension/ClassRegistry.h"  // after windows.h

namespace velmor::com {

namespace {

std::atomic<ITypeLib*> loaded{nullptr};

}  // namespace

ITypeLib& typeLibrary() {
    if (!loaded) {
        platform::ComPtr<ITypeLib> library;
        platform::check(LoadTypeLibEx(ownFile().c_str(), REGKIND_NONE, library.put()));
        ITypeLib* none = nullptr;
        if (loaded.compare_exchange_strong(none, library.get())) library.detach();
    }
    return *loaded;
}

HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept {
    return guard(IID_IDispatch, info, [&] {
        ITypeInfo* found = nullptr;
        platform::check(typeLibrary().GetTypeInfoOfGuid(id, &found));
        return found;
    });
}

void releaseTypeLibrary() noexcept {
    if (ITypeLib* const library = loaded.exchange(nullptr)) library->Release();
}

}  // namespace velmor::com
