#pragma once

#include <cstdint>

#include "platform/Services.h"

namespace velmor {

// The services that cleaning needs of its caller.
class CleanHost {
public:
    virtual ~CleanHost() = default;

    virtual platform::Services& services() noexcept = 0;

    // Whether the time is measured for cleaned().
    virtual bool timesCleaning() const noexcept { return false; }

    // Called once at the end of a run, also if the text did not change, with the elapsed seconds and the length
    // of the text.
    virtual void cleaned(double seconds, std::int32_t length) noexcept {
        static_cast<void>(seconds);
        static_cast<void>(length);
    }
};

}  // namespace velmor
