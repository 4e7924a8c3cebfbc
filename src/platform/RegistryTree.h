#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmor::platform {

// Keys and their string values, by path. Parts are separated by "\"; one at the end does not
// count. Keys and names match without regard to case and keep the spelling they came with first.
// A key's parents exist with it. Nothing is recursive, and a path of n units costs O(n) memory.
class RegistryTree {
public:
    void addKey(std::u16string_view key);
    void set(std::u16string_view key, std::u16string_view name, std::u16string_view value);
    void removeValue(std::u16string_view key, std::u16string_view name);
    void removeKey(std::u16string_view key);  // with everything below it

    const std::u16string* value(std::u16string_view key, std::u16string_view name) const;
    std::vector<std::u16string> valueNames(std::u16string_view key) const;  // in the order they were set first
    std::vector<std::u16string> subkeys(std::u16string_view key) const;     // sorted without regard to case

private:
    struct Value {
        std::u16string name;
        std::optional<std::u16string> text;  // nothing: removed
    };
    struct Key {
        std::u16string path;  // as written
        std::vector<Value> values;
        std::unordered_map<std::u16string, std::size_t> byName;  // lower case
    };

    Key& keyAt(std::u16string_view key);
    const Key* find(std::u16string_view key) const;

    // Lower case, parts separated by U+0000, so that a key is followed directly by what is below it.
    std::map<std::u16string, Key, std::less<>> keys_;
};

}  // namespace velmor::platform
