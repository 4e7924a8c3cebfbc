#include "direct/ObjectCache.h"

#include <string>

#include "automation/Convert.h"
#include "automation/Variant.h"

namespace velmor {

using automation::InvokeKind;
using automation::Variant;

namespace {

Variant objectName(std::u16string_view key) {
    return Variant(std::u16string(u"_").append(key));
}

Variant identifierName(std::u16string_view key) {
    return Variant(std::u16string(key).append(u".ID"));
}

}  // namespace

automation::ObjectRef ObjectCache::object(std::u16string_view key) const {
    Variant arguments[] = {objectName(key)};
    return properties_->invoke(u"GetValueObject", InvokeKind::method, arguments).object();
}

std::int32_t ObjectCache::identifier(std::u16string_view key) const {
    Variant arguments[] = {identifierName(key), Variant(std::int32_t{0})};
    return automation::toLong(properties_->invoke(u"GetValueLng", InvokeKind::method, arguments)).value_or(0);
}

void ObjectCache::put(std::u16string_view key, const automation::ObjectRef& object, std::int32_t identifier) const {
    Variant named[] = {objectName(key), Variant(object), Variant(true)};
    properties_->invoke(u"AddObject", InvokeKind::method, named);
    Variant numbered[] = {identifierName(key), Variant(identifier), Variant(true)};
    properties_->invoke(u"AddLng", InvokeKind::method, numbered);
}

void ObjectCache::remove(std::u16string_view key) const {
    Variant named[] = {objectName(key)};
    properties_->invoke(u"Remove", InvokeKind::method, named);
    Variant numbered[] = {identifierName(key)};
    properties_->invoke(u"Remove", InvokeKind::method, numbered);
}

}  // namespace velmor
