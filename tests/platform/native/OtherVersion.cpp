// A library of handlers for another version of the interface.

#include <velmor/handler_abi.h>

extern "C" __attribute__((visibility("default"))) const VelmorHandlerLibrary* velmorHandlerLibrary(int32_t) {
    static const VelmorHandlerLibrary other{VELMOR_HANDLER_ABI + 1, nullptr, 0, nullptr};
    return &other;
}
