#pragma once

#include <string>

#include "platform/win32/Windows.h"

namespace velmor::platform {

// A failed call to the platform, on its way to the boundary. Never leaves it.
struct Failure {
    HRESULT code;
};

inline void check(HRESULT code) {
    if (FAILED(code)) throw Failure{code};
}

// An exception as a host gets it. The texts are empty where there is nothing to say; without memory for them it is
// E_OUTOFMEMORY.
struct Raised {
    HRESULT code = E_FAIL;
    std::u16string source, description;
};

// The exception being handled. Numbers of the engine become 0x800A0000 + number. (ErrorBridge.cpp)
Raised raisedNow() noexcept;

// The result of a step, without the texts of its exception.
template <class Step>
HRESULT outcomeOf(Step&& step) noexcept try {
    step();
    return S_OK;
} catch (...) {
    return raisedNow().code;
}

}  // namespace velmor::platform
