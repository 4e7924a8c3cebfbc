#pragma once

#include <atomic>

#include "platform/win32/Windows.h"

namespace velmor::platform {

// The references to a COM object, which is made with one. For any thread.
class ReferenceCount {
public:
    ULONG add() noexcept { return ++count_; }
    // The remaining references; at 0 the object is destroyed.
    ULONG release() noexcept { return --count_; }
    // False when no reference remains.
    bool addIfAlive() noexcept {
        ULONG count = count_;
        while (count != 0) {
            if (count_.compare_exchange_weak(count, count + 1)) return true;
        }
        return false;
    }

private:
    std::atomic<ULONG> count_{1};
};

}  // namespace velmor::platform
