#include "com/TypeLibrary.h"

#include <utility>

#include "com/Failure.h"
#include "com/Module.h"

namespace velmor::com {

TypeLibrary& TypeLibrary::instance() {
    // Never destroyed: at the end of the process nothing may be called any more. DllMain calls
    // release() when the DLL alone goes.
    static TypeLibrary& library = *new TypeLibrary;
    return library;
}

ITypeLib& TypeLibrary::loaded() {
    if (!library_) check(LoadTypeLibEx(Module::path().c_str(), REGKIND_NONE, library_.put()));
    return *library_.get();
}

TypeLibrary::Entry& TypeLibrary::entry(REFGUID id) {
    for (Entry& known : entries_) {
        if (IsEqualGUID(known.id, id)) return known;
    }
    ComPtr<ITypeInfo> info;
    check(loaded().GetTypeInfoOfGuid(id, info.put()));
    return entries_.emplace_back(Entry{id, std::move(info), nullptr});
}

ComPtr<ITypeLib> TypeLibrary::library() {
    const std::lock_guard lock(mutex_);
    loaded();
    return library_;
}

ComPtr<ITypeInfo> TypeLibrary::typeInfo(REFGUID id) {
    const std::lock_guard lock(mutex_);
    return entry(id).info;
}

const InterfaceTable& TypeLibrary::table(REFIID id) {
    const std::lock_guard lock(mutex_);
    Entry& known = entry(id);
    if (!known.table) known.table = std::make_unique<InterfaceTable>(*known.info.get());
    return *known.table;
}

void TypeLibrary::release() noexcept {
    const std::lock_guard lock(mutex_);
    entries_.clear();
    library_ = nullptr;
}

}  // namespace velmor::com
