#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "automation/Enumeration.h"
#include "properties/privProperty.h"

namespace velmor {

class KeyedItems;

// What a host's "For Each" steps through. Entries removed or inserted meanwhile move the
// enumerator's place along: none is met twice or left out.
class PropertyEnumerator final : public automation::Enumeration {
public:
    PropertyEnumerator(std::shared_ptr<KeyedItems> items, std::size_t position);
    ~PropertyEnumerator() override;
    PropertyEnumerator(const PropertyEnumerator&) = delete;
    PropertyEnumerator& operator=(const PropertyEnumerator&) = delete;

    PropertyRef next();  // null at the end
    automation::ObjectRef nextObject() override { return next(); }
    bool skip(std::uint32_t count) override;
    void reset() override;
    std::shared_ptr<automation::Enumeration> clone() const override;
    std::u16string typeName() const override { return u"PropertyEnumerator"; }

private:
    friend class KeyedItems;
    std::shared_ptr<KeyedItems> items_;
    std::size_t position_;  // of the entry that comes next
};

}  // namespace velmor
