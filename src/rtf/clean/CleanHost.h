#pragma once

#include <cstdint>

#include "platform/Services.h"

namespace velmor {

// What cleaning takes from whoever starts it.
class CleanHost {
public:
    virtual ~CleanHost() = default;

    virtual platform::Services& services() noexcept = 0;

    // Whether cleaned() is to be called; no time is measured otherwise.
    virtual bool timesCleaning() const noexcept { return false; }

    // Told once at the end of a run, also when the text was left as it was: the elapsed seconds and
    // the length of the text.
    virtual void cleaned(double seconds, std::int32_t length) noexcept {
        static_cast<void>(seconds);
        static_cast<void>(length);
    }
};

}  // namespace velmor
