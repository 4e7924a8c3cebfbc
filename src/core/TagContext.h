#pragma once

#include <memory>

#include "automation/Object.h"
#include "core/Collection.h"

namespace velmor {

// What a tag hands down to its child tags: references to the same collections and objects, and
// the protection flag as it stood when they were copied.
struct TagContext {
    Collection properties;
    Collection variables;
    std::shared_ptr<privProperties> privateVariables;
    std::shared_ptr<privProperties> errorLog;
    automation::ObjectRef database;
    bool protectRtf = false;
};

}  // namespace velmor
