#include "core/RowScope.h"

#include <utility>

#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

// A list within the entry is a collection.
Variant valueOf(privProperty& property) {
    Variant value = property.Value();
    const auto* const text = value.get<std::u16string>();
    if (text == nullptr || !text->empty() || !property.HasProperties()) return value;
    return Variant(automation::ObjectRef(property.Properties()));
}

}  // namespace

RowScope::~RowScope() {
    for (const auto& [key, hidden] : hidden_) restore(hidden);
}

void RowScope::enter(privProperty& entry, std::int32_t index, std::int32_t count) {
    row_ = index;
    set(u"Index", Variant(index));
    set(u"Count", Variant(count));
    set(u"First", Variant(index == 1));
    set(u"Last", Variant(index == count));
    const auto collection = std::dynamic_pointer_cast<privProperties>(entry.Value().object());
    const PropertiesRef properties = collection ? collection : entry.Properties();
    if (properties->Count() == 0) set(u"Value", entry.Value());
    for (std::int32_t at = 1; at <= properties->Count(); ++at) {
        const PropertyRef property = properties->Item(at);
        set(property->Name(), valueOf(*property));
    }
    std::erase_if(hidden_, [&](const auto& each) {
        if (each.second.row == row_) return false;
        restore(each.second);
        return true;
    });
}

void RowScope::set(std::u16string_view name, Variant value) {
    const auto [place, isNew] = hidden_.try_emplace(upperCase(name));
    Hidden& hidden = place->second;
    if (isNew) {
        hidden.name = name;
        if (const PropertyRef present = properties_.Item(name)) hidden.value = present->Value();
    }
    hidden.row = row_;
    properties_.Add(name, std::move(value), true);
}

void RowScope::restore(const Hidden& hidden) {
    if (!hidden.value) return properties_.Remove(Variant(hidden.name));
    if (const PropertyRef present = properties_.Item(hidden.name)) present->SetValueQuiet(Variant(*hidden.value));
}

}  // namespace velmor
