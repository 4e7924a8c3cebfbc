#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Services.h"

namespace velmor::platform {

// A registry in memory. Keys and names keep the spelling that they were first given. A key's parents
// exist with it. Nothing is recursive, and a path of n units costs O(n) memory.
class RegistryTree : public Registry {
public:
    void addKey(std::u16string_view key) { keyAt(key); }
    void set(std::u16string_view key, std::u16string_view name, std::u16string_view value);
    void removeValue(std::u16string_view key, std::u16string_view name);
    void removeKey(std::u16string_view key);  // with everything below it

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    // In the order in which they were first set.
    std::vector<std::u16string> valueNames(std::u16string_view key) const override;
    // Sorted without regard to case.
    std::vector<std::u16string> subkeys(std::u16string_view key) const override;

private:
    struct Value {
        std::size_t order;  // of being set first
        std::u16string name;
        std::u16string text;
    };
    struct Key {
        std::u16string path;                               // as written
        std::unordered_map<std::u16string, Value> values;  // by name in lower case
    };

    Key& keyAt(std::u16string_view key);
    const Key* find(std::u16string_view key) const;

    // Lower case, with U+0000 between the parts, so that a key's subkeys follow it directly.
    std::map<std::u16string, Key> keys_;
    std::size_t valuesSet_ = 0;
};

}  // namespace velmor::platform
