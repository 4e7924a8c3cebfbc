#pragma once

#include "platform/win32/Windows.h"

namespace velmor::com {

// A failed call to the platform, on its way to the boundary. Never leaves it.
struct Failure {
    HRESULT code;
};

inline void check(HRESULT code) {
    if (FAILED(code)) throw Failure{code};
}

}  // namespace velmor::com
