#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// Classes of registerClass, and the system's registered automation classes. COM must have been initialised on
// the calling thread. Each object's class is looked up anew. For any thread.
class MachineObjects : public Objects {
public:
    automation::ObjectRef create(std::u16string_view className) override;
};

}  // namespace velmor::platform
