#include "automation/Variant.h"

namespace velmor::automation {

namespace {

// DISP_E_PARAMNOTFOUND.
constexpr ErrorCode kParameterNotFound{static_cast<std::int32_t>(0x80020004u)};

// In the order of Variant's alternatives.
constexpr VariantType kTypes[] = {
    VariantType::empty,      VariantType::null,        VariantType::integer,  VariantType::longInteger,
    VariantType::single,     VariantType::doubleFloat, VariantType::currency, VariantType::date,
    VariantType::string,     VariantType::object,      VariantType::error,    VariantType::boolean,
    VariantType::dataObject, VariantType::decimal,     VariantType::byte,     VariantType::userDefined,
    VariantType::array,
};

}  // namespace

Variant Variant::missing() {
    return Variant(kParameterNotFound);
}

bool Variant::isMissing() const noexcept {
    const auto* error = get<ErrorCode>();
    return error != nullptr && *error == kParameterNotFound;
}

std::int32_t Variant::typeCode() const noexcept {
    const auto code = static_cast<std::int32_t>(type());
    const auto* array = get<std::shared_ptr<const Array>>();
    if (array == nullptr) return code;
    return code + static_cast<std::int32_t>(*array ? (*array)->elementType : VariantType::variant);
}

VariantType Variant::type() const noexcept {
    static_assert(std::size(kTypes) == std::variant_size_v<decltype(value_)>);
    return kTypes[value_.index()];
}

ObjectRef Variant::object() const noexcept {
    const auto* reference = get<ObjectRef>();
    return reference == nullptr ? nullptr : *reference;
}

}  // namespace velmor::automation
