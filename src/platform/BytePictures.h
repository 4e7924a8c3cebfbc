#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// Pictures that keep the bytes of their file, so that saving gives the same file. The signature alone tells a picture:
// PNG, JPEG, GIF and BMP are bitmaps; WMF (placeable or plain), EMF and ICO.
class BytePictures : public Pictures {
public:
    explicit BytePictures(Files& files) : files_(files) {}

    automation::ObjectRef load(std::u16string_view path) override;
    bool save(const automation::ObjectRef& picture, std::u16string_view path) override;

private:
    Files& files_;
};

}  // namespace velmor::platform
