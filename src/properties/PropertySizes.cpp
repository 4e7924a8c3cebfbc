// The estimates of a property's size. Callers compare only sizes that were computed this way.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::VariantType;

namespace {

constexpr double encodedGrowth = 1.34;

// In bytes, and in characters of the text form besides the name. All other types count 0.
struct TypeSize {
    VariantType type;
    std::int32_t size, stored;
};
constexpr TypeSize typeSizes[] = {
    {VariantType::null, 0, 5},         {VariantType::integer, 1, 9},   {VariantType::byte, 1, 0},
    {VariantType::longInteger, 2, 14}, {VariantType::boolean, 2, 7},   {VariantType::single, 4, 16},
    {VariantType::doubleFloat, 8, 24}, {VariantType::currency, 8, 24}, {VariantType::date, 8, 25},
    {VariantType::decimal, 8, 21},     {VariantType::object, 32, 0},
};

TypeSize sizeOf(VariantType type) {
    const auto* const found = std::ranges::find(typeSizes, type, &TypeSize::type);
    return found != std::end(typeSizes) ? *found : TypeSize{type, 0, 0};
}

bool isText(const privProperty& property) {
    return static_cast<VariantType>(property.ValueType()) == VariantType::string;
}

}  // namespace

std::int32_t privProperty::Size() const {
    if (isText(*this)) return checkedLong(static_cast<std::int64_t>(ValueStr().size()));
    return sizeOf(static_cast<VariantType>(ValueType())).size;
}

std::int32_t privProperty::valueSizeStored() const {
    const auto name = static_cast<std::int64_t>(name_.size());
    if (!isText(*this)) {
        const std::int32_t stored = sizeOf(static_cast<VariantType>(ValueType())).stored;
        return stored == 0 ? 0 : checkedLong(name + stored);
    }
    const std::u16string text = ValueStr();
    const auto length = static_cast<std::int64_t>(text.size());
    if (!Encode()) return checkedLong(name + length + (text.find(u"\":") != text.npos ? 8 : 4));
    // nearbyint rounds halves to even, as the platform does.
    const double size = static_cast<double>(length) * encodedGrowth + static_cast<double>(name) + 7;
    return checkedLong(static_cast<std::int64_t>(std::nearbyint(size)));
}

std::int32_t privProperty::sizeStored(int level) {
    return withChildren(valueSizeStored(), level, &privProperties::sizeStored);
}

}  // namespace velmor
