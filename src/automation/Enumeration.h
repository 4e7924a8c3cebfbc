#pragma once

#include <cstdint>
#include <memory>

#include "automation/Variant.h"

namespace velmor::automation {

// What a host's "For Each" steps through. Late-bound: Next (Nothing at the end), Skip, Reset, Clone.
class Enumeration : public Object {
public:
    virtual ObjectRef nextObject() = 0;                      // null at the end
    virtual bool skip(std::uint32_t count) = 0;              // false when fewer were left; it is then at the end
    virtual void reset() = 0;                                // back to the first
    virtual std::shared_ptr<Enumeration> clone() const = 0;  // at the same place

    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) final;
};

}  // namespace velmor::automation
