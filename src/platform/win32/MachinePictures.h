#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// The system's picture objects, in the formats that it loads.
class MachinePictures : public Pictures {
public:
    explicit MachinePictures(Files& files) : files_(files) {}

    automation::ObjectRef load(std::u16string_view path) override;
    bool save(const automation::ObjectRef& picture, std::u16string_view path) override;

private:
    Files& files_;
};

}  // namespace velmor::platform
