#pragma once

#include <string_view>

#include "automation/Object.h"
#include "velmor/handler_abi.h"

namespace velmor::platform {

// A handler of a library behind the C interface: calls go to the library, and the objects that are passed to it can be
// called from there. Null for a class that the library does not have. The library must stay loaded.
automation::ObjectRef handlerOf(const VelmorHandlerLibrary& library, std::u16string_view className);

}  // namespace velmor::platform
