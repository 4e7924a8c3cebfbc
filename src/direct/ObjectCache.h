#pragma once

#include <cstdint>
#include <string_view>

#include "automation/Object.h"

namespace velmor {

// Objects kept in a property collection, the system's own or a host's: for a key K the object is the
// property "_K", and its identifier "K.ID". Raises the errors of a host's collection.
class ObjectCache {
public:
    ObjectCache() = default;
    explicit ObjectCache(automation::ObjectRef properties) : properties_(std::move(properties)) {}

    explicit operator bool() const noexcept { return properties_ != nullptr; }
    automation::ObjectRef object(std::u16string_view key) const;  // null when absent
    std::int32_t identifier(std::u16string_view key) const;       // 0 when absent
    void put(std::u16string_view key, const automation::ObjectRef& object, std::int32_t identifier) const;
    void remove(std::u16string_view key) const;

private:
    automation::ObjectRef properties_;
};

}  // namespace velmor
