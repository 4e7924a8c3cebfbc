#pragma once

#include <memory>

#include "cli/Tape.h"
#include "cli/TapedObjects.h"
#include "platform/Services.h"

namespace velmor::cli {

// Services whose every call is a question on the tape. While replaying, the real ones are not called: nothing is read,
// written, created or asked of the machine.
class TapedServices {
public:
    // All must last.
    TapedServices(platform::Services& real, Tape& tape);
    ~TapedServices();
    TapedServices(const TapedServices&) = delete;
    TapedServices& operator=(const TapedServices&) = delete;

    platform::Services& services() noexcept;
    TapedObjects& objects() noexcept { return *objects_; }

private:
    struct Parts;

    const std::shared_ptr<TapedObjects> objects_;
    const std::unique_ptr<Parts> parts_;
};

}  // namespace velmor::cli
