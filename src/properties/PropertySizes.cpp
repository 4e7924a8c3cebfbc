// The estimates of a property's size. Their figures are the system's own: callers compare sizes
// that were computed this way.

#include <cmath>

#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::VariantType;

namespace {

constexpr double kEncodedGrowth = 1.34;

struct TextFacts {
    std::int64_t length = 0;
    bool holdsTerminator = false;
};

TextFacts factsOf(std::u16string_view text) {
    return {static_cast<std::int64_t>(text.size()), text.find(u"\":") != text.npos};
}

TextFacts textFacts(const privProperty& property) {
    if (property.builder()) return factsOf(property.builder()->ReturnVal());
    return factsOf(*property.plainText());
}

// Halves to even, as the platform rounds.
std::int64_t roundedSize(double size) {
    return static_cast<std::int64_t>(std::nearbyint(size));
}

}  // namespace

std::int32_t privProperty::Size() const {
    switch (static_cast<VariantType>(ValueType())) {
        case VariantType::integer:
        case VariantType::byte:
            return 1;
        case VariantType::longInteger:
        case VariantType::boolean:
            return 2;
        case VariantType::single:
            return 4;
        case VariantType::doubleFloat:
        case VariantType::currency:
        case VariantType::date:
        case VariantType::decimal:
            return 8;
        case VariantType::string:
            return checkedLong(textFacts(*this).length);
        case VariantType::object:
            return 32;
        default:
            return 0;
    }
}

std::int32_t privProperty::valueSizeStored() const {
    const auto name = static_cast<std::int64_t>(name_.size());
    switch (static_cast<VariantType>(ValueType())) {
        case VariantType::null:
            return checkedLong(name + 5);
        case VariantType::integer:
            return checkedLong(name + 9);
        case VariantType::longInteger:
            return checkedLong(name + 14);
        case VariantType::single:
            return checkedLong(name + 16);
        case VariantType::doubleFloat:
        case VariantType::currency:
            return checkedLong(name + 24);
        case VariantType::date:
            return checkedLong(name + 25);
        case VariantType::boolean:
            return checkedLong(name + 7);
        case VariantType::decimal:
            return checkedLong(name + 21);
        case VariantType::string:
            break;
        default:
            return 0;
    }
    const TextFacts text = textFacts(*this);
    if (Encode()) {
        const double size = static_cast<double>(text.length) * kEncodedGrowth + static_cast<double>(name) + 7;
        return checkedLong(roundedSize(size));
    }
    return checkedLong(name + text.length + (text.holdsTerminator ? 8 : 4));
}

std::int32_t privProperty::SizeStored() {
    return sizeStored(0);
}

std::int32_t privProperty::sizeStored(int level) {
    std::int32_t size = valueSizeStored();
    if (extras_ == nullptr || level >= privProperties::maximumNesting) return size;
    if (HasAttributes()) size = checkedLong(std::int64_t{size} + Attributes()->sizeStored(level + 1));
    if (HasProperties()) size = checkedLong(std::int64_t{size} + Properties()->sizeStored(level + 1));
    return size;
}

}  // namespace velmor
