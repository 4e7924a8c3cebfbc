#include "platform/win32/Apartment.h"

#include "platform/win32/Windows.h"
// Needs Windows.h before it.
#include <ole2.h>

namespace velmor::platform {

Apartment::Apartment() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}

Apartment::~Apartment() {
    if (entered_) OleUninitialize();
}

}  // namespace velmor::platform
