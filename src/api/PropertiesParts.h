#pragma once

#include <memory>
#include <utility>

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
    explicit Parts(std::shared_ptr<privProperties> collection) noexcept : items(std::move(collection)) {}

    std::shared_ptr<privProperties> items;
};

}  // namespace v1
}  // namespace velmor
