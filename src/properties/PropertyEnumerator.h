#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "properties/privProperty.h"

namespace velmor {

class KeyedItems;

// What a host's "For Each" steps through. Entries removed or inserted meanwhile move the
// enumerator's place along: none is met twice or left out.
class PropertyEnumerator final : public automation::Object {
public:
    PropertyEnumerator(std::shared_ptr<KeyedItems> items, std::size_t position);
    ~PropertyEnumerator() override;
    PropertyEnumerator(const PropertyEnumerator&) = delete;
    PropertyEnumerator& operator=(const PropertyEnumerator&) = delete;

    PropertyRef next();              // null at the end
    bool skip(std::uint32_t count);  // false when fewer were left; it is then at the end
    void reset();
    std::shared_ptr<PropertyEnumerator> clone() const;  // at the same place

    // Late-bound: Next (Nothing at the end), Skip, Reset, Clone.
    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"PropertyEnumerator"; }

private:
    friend class KeyedItems;
    std::shared_ptr<KeyedItems> items_;
    std::size_t position_;  // of the entry that comes next
};

}  // namespace velmor
