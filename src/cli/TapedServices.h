#pragma once

#include <memory>

#include "cli/Tape.h"
#include "platform/Services.h"

namespace velmor::cli {

// Services whose every call is a question on the tape. While replaying, the real ones are not called: nothing is read,
// written, created or asked of the machine. Both must last longer.
std::shared_ptr<platform::Services> tapedServices(platform::Services& real, Tape& tape);

}  // namespace velmor::cli
