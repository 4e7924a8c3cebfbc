#pragma once

#include <string>

#include "automation/Object.h"

namespace velmor::platform {

// A picture that keeps the bytes of its file, so that saving gives the same file. Its one property is `Type`. A null
// reference when the bytes are not a picture, which the signature alone decides: PNG, JPEG, GIF and BMP are bitmaps;
// WMF (placeable or plain), EMF and ICO.
automation::ObjectRef pictureFromBytes(std::string bytes);

// The bytes of a picture made by pictureFromBytes; null for every other object.
const std::string* pictureBytes(const automation::ObjectRef& picture);

}  // namespace velmor::platform
