#pragma once

#include <string>
#include <vector>

#include "platform/NativeObject.h"
#include "platform/Services.h"

namespace velmor::platform {

// Classes of registerClass, and those of shared libraries as NativeObject.h describes. Each
// object's class is looked up anew; libraries stay loaded. For any thread.
class NativeObjects : public Objects {
public:
    // Relative and moved libraries are searched in `folders`, in this order.
    NativeObjects(const Registry& registry, std::vector<std::u16string> folders);

    automation::ObjectRef create(std::u16string_view className) override;

private:
    VelmorCreateObject* entryFor(std::u16string_view className) const;
    std::u16string registeredLibrary(std::u16string_view className) const;  // empty: not registered
    std::string findLibrary(std::u16string_view registered) const;          // empty: not found

    const Registry& registry_;
    std::vector<std::u16string> folders_;
};

}  // namespace velmor::platform
