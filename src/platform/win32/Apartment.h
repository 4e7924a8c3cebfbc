#pragma once

#include "platform/win32/Windows.h"
// Needs Windows.h before it.
#include <ole2.h>

namespace velmor::platform {

// Enters a single-threaded apartment with the services of OLE for the calling thread, as automation objects
// expect, and leaves it again. For programs; a component uses its host's apartment.
class Apartment {
public:
    Apartment() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}
    ~Apartment() {
        if (entered_) OleUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    bool entered_;
};

}  // namespace velmor::platform
