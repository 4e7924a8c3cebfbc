#include "automation/Variant.h"

#include <algorithm>

namespace velmor::automation {

namespace {

// DISP_E_PARAMNOTFOUND.
constexpr ErrorCode parameterNotFound{static_cast<std::int32_t>(0x80020004u)};

struct TypeName {
    VariantType type;
    const char16_t* name;
};
// Those of Variant's alternatives in their order, then the type of an array's elements.
constexpr TypeName types[] = {
    {VariantType::empty, u"Empty"},        {VariantType::null, u"Null"},
    {VariantType::integer, u"Integer"},    {VariantType::longInteger, u"Long"},
    {VariantType::single, u"Single"},      {VariantType::doubleFloat, u"Double"},
    {VariantType::currency, u"Currency"},  {VariantType::date, u"Date"},
    {VariantType::string, u"String"},      {VariantType::object, u"Object"},
    {VariantType::error, u"Error"},        {VariantType::boolean, u"Boolean"},
    {VariantType::dataObject, u"Unknown"}, {VariantType::decimal, u"Decimal"},
    {VariantType::byte, u"Byte"},          {VariantType::userDefined, u"UserDefined"},
    {VariantType::array, u"Variant"},      {VariantType::variant, u"Variant"},
};

std::u16string plainTypeName(VariantType type) {
    const auto* const found = std::ranges::find(types, type, &TypeName::type);
    return found == std::end(types) ? u"Variant" : found->name;
}

}  // namespace

Variant Variant::missing() {
    return Variant(parameterNotFound);
}

bool Variant::isMissing() const noexcept {
    const auto* error = get<ErrorCode>();
    return error != nullptr && *error == parameterNotFound;
}

std::int32_t Variant::typeCode() const noexcept {
    const auto code = static_cast<std::int32_t>(type());
    const auto* array = get<Array>();
    return array == nullptr ? code : code + static_cast<std::int32_t>(array->elementType);
}

VariantType Variant::type() const noexcept {
    static_assert(std::size(types) == std::variant_size_v<decltype(value_)> + 1);
    return types[value_.index()].type;
}

ObjectRef Variant::object() const noexcept {
    const auto* reference = get<ObjectRef>();
    return reference == nullptr ? nullptr : *reference;
}

std::u16string typeNameOf(const Variant& value) {
    if (const auto* array = value.get<Array>()) return plainTypeName(array->elementType) + u"()";
    if (!value.isObject()) return plainTypeName(value.type());
    const ObjectRef object = value.object();
    return object ? object->typeName() : u"Nothing";
}

}  // namespace velmor::automation
