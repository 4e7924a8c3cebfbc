#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"
#include "properties/privProperties.h"

namespace velmor {

// The properties of one entry after the other in the place of a collection's own. Its end restores the values of those.
// The collection must last as long.
class RowScope {
public:
    explicit RowScope(privProperties& properties) : properties_(properties) {}
    ~RowScope();
    RowScope(const RowScope&) = delete;
    RowScope& operator=(const RowScope&) = delete;

    // `index` from 1. The values of the previous entry go. Linear in the entry's properties.
    void enter(privProperty& entry, std::int32_t index, std::int32_t count);

private:
    struct Hidden {
        std::u16string name;
        std::optional<automation::Variant> value;  // nothing if there is no such property
        std::int32_t row;                          // the last that set it
    };

    void set(std::u16string_view name, automation::Variant value);
    void restore(const Hidden& hidden);

    privProperties& properties_;
    std::int32_t row_ = 0;
    std::map<std::u16string, Hidden> hidden_;  // by name in upper case
};

}  // namespace velmor
