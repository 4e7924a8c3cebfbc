#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// Pictures that keep the bytes of their file: PNG, JPEG, GIF, BMP, WMF, EMF and ICO.
class PosixPictures : public Pictures {
public:
    explicit PosixPictures(Files& files) : files_(files) {}

    automation::ObjectRef load(std::u16string_view path) override;
    bool save(const automation::ObjectRef& picture, std::u16string_view path) override;

private:
    Files& files_;
};

}  // namespace velmor::platform
