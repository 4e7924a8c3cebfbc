#include "com/TypeLibrary.h"

#include <mutex>

#include "com/Guard.h"
#include "com/Module.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

// Never destroyed: at the end of the process nothing may be called any more.
struct Loaded {
    std::mutex mutex;
    ComPtr<ITypeLib> library;
};
Loaded& loaded() {
    static Loaded& only = *new Loaded;
    return only;
}

}  // namespace

ComPtr<ITypeLib> typeLibrary() {
    const std::lock_guard lock(loaded().mutex);
    ComPtr<ITypeLib>& library = loaded().library;
    if (!library) platform::check(LoadTypeLibEx(Module::path().c_str(), REGKIND_NONE, library.put()));
    return library;
}

HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept {
    return guard(IID_IDispatch, info, [&] {
        ITypeInfo* found = nullptr;
        platform::check(typeLibrary()->GetTypeInfoOfGuid(id, &found));
        return found;
    });
}

void releaseTypeLibrary() noexcept {
    const std::lock_guard lock(loaded().mutex);
    loaded().library = nullptr;
}

}  // namespace velmor::com
