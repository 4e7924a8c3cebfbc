#pragma once

#include <string>
#include <string_view>

#include "automation/Variant.h"
#include "platform/Services.h"

namespace velmor {

// A picture value (an object whose type name is "Picture") as text: the marker ~RO~Picture", the picture's
// bytes in base64, and the closing quote and colon. Empty for every other value and when the picture cannot be
// saved. Uses a temporary file, which it removes.
std::u16string PictureToText(platform::Services& services, const automation::Variant& pvValue);

// The picture with these bytes; null when the platform cannot load them. Uses a temporary file, which it
// removes.
automation::ObjectRef LoadPictureFromText(platform::Services& services, std::string_view bytes);

}  // namespace velmor
