#pragma once

#include <string>
#include <unordered_map>

#include "platform/Services.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// Classes of registerClass, and the system's registered automation classes. COM must have been
// initialised on the calling thread.
class MachineObjects : public Objects {
public:
    automation::ObjectRef create(std::u16string_view className) override;

private:
    CLSID identifierOf(std::u16string_view className);

    std::unordered_map<std::u16string, CLSID> identifiers_;  // by class name as written
};

}  // namespace velmor::platform
