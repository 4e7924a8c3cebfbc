#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;

// What a kvDirectTag takes from the tag that it belongs to.
class DirectOwner {
public:
    virtual ~DirectOwner() = default;

    virtual platform::Services& directServices() const = 0;
    virtual automation::ObjectRef directProperties() = 0;  // also a host's own collection
    virtual automation::ObjectRef directDatabase() = 0;    // null if absent
    virtual std::shared_ptr<privProperties> directErrorLog() = 0;
    // The text of the tag's parameter of that name, evaluated; "0" if the parameter is absent.
    virtual std::u16string directElement(std::u16string_view psName) = 0;
};

}  // namespace velmor
