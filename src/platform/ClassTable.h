#pragma once

#include <string_view>

#include "platform/SystemServices.h"

namespace velmor::platform {

// Creates an object of a class of registerClass. A null reference when the name is not registered; Error
// 429 when its factory fails.
automation::ObjectRef createRegisteredClass(std::u16string_view className);

// Error 429 that names the class and the reason.
[[noreturn]] void raiseCannotCreate(std::u16string_view className, std::u16string_view reason);

// A name that may be a registered class name: not empty, no braced identifier, no moniker, no path.
bool isClassName(std::u16string_view className);

}  // namespace velmor::platform
