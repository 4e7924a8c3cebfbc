#include "automation/Convert.h"

namespace velmor::automation {

namespace {

struct TypeName {
    VariantType type;
    const char16_t* name;
};
constexpr TypeName kTypeNames[] = {
    {VariantType::empty, u"Empty"},       {VariantType::null, u"Null"},
    {VariantType::integer, u"Integer"},   {VariantType::longInteger, u"Long"},
    {VariantType::single, u"Single"},     {VariantType::doubleFloat, u"Double"},
    {VariantType::currency, u"Currency"}, {VariantType::date, u"Date"},
    {VariantType::string, u"String"},     {VariantType::object, u"Object"},
    {VariantType::error, u"Error"},       {VariantType::boolean, u"Boolean"},
    {VariantType::variant, u"Variant"},   {VariantType::dataObject, u"Unknown"},
    {VariantType::decimal, u"Decimal"},   {VariantType::byte, u"Byte"},
    {VariantType::array, u"Variant"},     {VariantType::userDefined, u"UserDefined"},
};

std::u16string plainTypeName(VariantType type) {
    for (const TypeName& each : kTypeNames) {
        if (each.type == type) return each.name;
    }
    return u"Variant";
}

}  // namespace

std::u16string typeNameOf(const Variant& value) {
    if (const auto* array = value.get<std::shared_ptr<const Array>>()) {
        return plainTypeName(*array ? (*array)->elementType : VariantType::variant) + u"()";
    }
    if (!value.isObject()) return plainTypeName(value.type());
    const ObjectRef object = value.object();
    return object ? object->typeName() : u"Nothing";
}

}  // namespace velmor::automation
