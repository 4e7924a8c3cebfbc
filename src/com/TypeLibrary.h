#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "com/InterfaceTable.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

using platform::ComPtr;

// The component's type library, out of its own resources. Loaded on first use. Any thread.
class TypeLibrary {
public:
    static TypeLibrary& instance();

    ComPtr<ITypeLib> library();  // throws Failure, as do the others
    // An interface as late binding sees it, or a class.
    ComPtr<ITypeInfo> typeInfo(REFGUID id);
    // Lives until release().
    const InterfaceTable& table(REFIID id);

    // Lets everything go, just before the DLL is unloaded.
    void release() noexcept;

private:
    struct Entry {
        GUID id;
        ComPtr<ITypeInfo> info;
        std::unique_ptr<InterfaceTable> table;
    };

    ITypeLib& loaded();
    Entry& entry(REFGUID id);

    std::mutex mutex_;
    ComPtr<ITypeLib> library_;
    std::vector<Entry> entries_;
};

}  // namespace velmor::com
