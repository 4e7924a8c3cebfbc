#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Services.h"

namespace velmor {

class privProperties;

struct ErrorLogEntry {
    std::u16string_view handler;
    std::u16string_view message;
    std::int32_t number = 0;
    std::u16string_view tagData;
    std::u16string_view errorData;
};

// Adds an entry of its own (also where the handler has one): named after the handler, its value
// the message, with child properties "DateTime" (always), "Err" (not 0), "TagData" and "ErrData"
// (not empty).
void addErrorLogEntry(platform::Services& services, privProperties& log, const ErrorLogEntry& entry);

}  // namespace velmor
