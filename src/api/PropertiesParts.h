#pragma once

#include <memory>

#include "platform/Services.h"
#include "properties/privProperties.h"
#include "velmor/velmor.h"

namespace velmor::api {

// The machine without a registry. Never destroyed.
platform::Services& machine();

}  // namespace velmor::api

namespace velmor {
inline namespace v1 {

struct Properties::Parts {
    std::shared_ptr<privProperties> items = std::make_shared<privProperties>(api::machine());
};

}  // namespace v1
}  // namespace velmor
