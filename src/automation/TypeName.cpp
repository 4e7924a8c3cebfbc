#include "automation/Convert.h"

namespace velmor::automation {

namespace {

std::u16string plainTypeName(VariantType type) {
    switch (type) {
        case VariantType::empty:
            return u"Empty";
        case VariantType::null:
            return u"Null";
        case VariantType::integer:
            return u"Integer";
        case VariantType::longInteger:
            return u"Long";
        case VariantType::single:
            return u"Single";
        case VariantType::doubleFloat:
            return u"Double";
        case VariantType::currency:
            return u"Currency";
        case VariantType::date:
            return u"Date";
        case VariantType::string:
            return u"String";
        case VariantType::object:
            return u"Object";
        case VariantType::error:
            return u"Error";
        case VariantType::boolean:
            return u"Boolean";
        case VariantType::variant:
        case VariantType::array:
            return u"Variant";
        case VariantType::dataObject:
            return u"Unknown";
        case VariantType::decimal:
            return u"Decimal";
        case VariantType::byte:
            return u"Byte";
        case VariantType::userDefined:
            return u"UserDefined";
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
