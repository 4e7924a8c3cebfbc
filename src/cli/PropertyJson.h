#pragma once

#include "cli/JsonText.h"
#include "platform/Services.h"
#include "properties/privProperty.h"

namespace velmor::cli {

// A property's value as `velmor props --json` writes it.
Json jsonOfValue(platform::Services& services, const privProperty& property);

}  // namespace velmor::cli
