#include "direct/kvDirectTag.h"

#include "automation/Convert.h"
#include "automation/Errors.h"
#include "direct/ErrorLogRecord.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

namespace {

std::u16string shortClassName(std::u16string_view className) {
    return std::u16string(className.substr(className.find(u'.') + 1));
}

std::u16string named(std::u16string_view psName, std::u16string_view key) {
    return std::u16string(psName).append(u"_").append(key);
}

std::u16string itemKey(std::int32_t plObjectType) {
    return u"kvObjectItem_" + automation::toText(Variant(plObjectType)).value_or(std::u16string());
}

// A member that must answer with an object.
ObjectRef objectOf(const Variant& answer) {
    ObjectRef object = answer.object();
    if (!object) automation::raiseTypeMismatch();
    return object;
}

// Resolves a name without a "." through the database's type definitions. "" if they do not know it.
std::u16string definedClass(const ObjectRef& database, std::u16string_view psClassName) {
    const ObjectRef system = objectOf(database->invoke(u"System", InvokeKind::get, {}));
    Variant arguments[] = {Variant(psClassName)};
    const ObjectRef definition = objectOf(system->invoke(u"GetObjectTypeDef", InvokeKind::method, arguments));
    if (!automation::toBoolean(definition->invoke(u"IsDefined", InvokeKind::get, {})).value_or(false)) return {};
    return automation::toText(definition->invoke(u"ClassName", InvokeKind::get, {})).value_or(std::u16string());
}

// An error of the host's objects ends the member.
template <class Call>
auto quietly(Call&& call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

// The objects that a member uses. It holds references, as the host's objects may dispose the tag meanwhile.
struct kvDirectTag::Access {
    std::shared_ptr<DirectOwner> owner;
    ObjectCache cache;
    ObjectRef database;

    std::int32_t identifier(std::int32_t plID, std::u16string_view psIDName) const {
        if (plID != 0) return plID;
        return automation::toLong(Variant(owner->directElement(psIDName))).value_or(0);
    }
    // Null when the kept object has another identifier.
    ObjectRef kept(const std::u16string& key, std::int32_t identifier) const {
        const ObjectRef object = cache.object(key);
        return identifier == 0 || cache.identifier(key) == identifier ? object : nullptr;
    }
    const ObjectRef& hostDatabase() const {
        if (!database) automation::raiseTypeMismatch();
        return database;
    }
};

// Raises when the tag is gone.
kvDirectTag::Access kvDirectTag::access() {
    const std::shared_ptr<DirectOwner> owner = owner_.lock();
    if (!owner) automation::raiseTypeMismatch();
    if (!cache_) {
        cache_ = ObjectCache(owner->directProperties());
        database_ = owner->directDatabase();
    }
    return {owner, cache_, database_};
}

void kvDirectTag::cleanUp() noexcept {
    owner_.reset();
    cache_ = {};
    database_.reset();
}

ObjectRef kvDirectTag::getObject(const std::u16string& key, std::u16string_view psClassName, std::int32_t plID,
                                 std::u16string_view psIDName) {
    return quietly([&]() -> ObjectRef {
        const Access on = access();
        std::int32_t identifier = on.identifier(plID, psIDName);
        if (ObjectRef object = on.kept(key, identifier)) return object;
        if (identifier == 0) identifier = on.cache.identifier(key);
        if (identifier == 0) return nullptr;

        const bool isClass = psClassName.find(u'.') != psClassName.npos;
        const std::u16string className =
            isClass ? std::u16string(psClassName) : definedClass(on.hostDatabase(), psClassName);
        if (className.empty()) return nullptr;
        const ObjectRef object = on.owner->directServices().objects.create(className);
        Variant database[] = {Variant(on.database)};
        object->invoke(u"Database", InvokeKind::set, database);
        Variant opened[] = {Variant(identifier)};
        const Variant isOpen = object->invoke(u"OpenItem", InvokeKind::method, opened);
        if (!automation::toBoolean(isOpen).value_or(false)) return nullptr;
        on.cache.put(key, object, automation::toLong(opened[0]).value_or(identifier));
        return object;
    });
}

ObjectRef kvDirectTag::GetObject(std::u16string_view psClassName, std::int32_t plID, std::u16string_view psIDName) {
    return getObject(shortClassName(psClassName), psClassName, plID, psIDName);
}

ObjectRef kvDirectTag::GetObjectName(std::u16string_view psName, std::u16string_view psClassName, std::int32_t plID,
                                     std::u16string_view psIDName) {
    return getObject(named(psName, shortClassName(psClassName)), psClassName, plID, psIDName);
}

ObjectRef kvDirectTag::getItem(const std::u16string& key, std::int32_t plObjectType, std::int32_t plID,
                               std::u16string_view psIDName) {
    return quietly([&]() -> ObjectRef {
        const Access on = access();
        const std::int32_t identifier = on.identifier(plID, psIDName);
        if (ObjectRef object = on.kept(key, identifier)) return object;
        Variant arguments[] = {Variant(plObjectType), Variant(identifier)};
        const ObjectRef object = on.hostDatabase()->invoke(u"GetObjectItem", InvokeKind::method, arguments).object();
        if (object) on.cache.put(key, object, identifier);
        return object;
    });
}

ObjectRef kvDirectTag::GetObjectItem(std::int32_t plObjectType, std::int32_t plID, std::u16string_view psIDName) {
    return getItem(itemKey(plObjectType), plObjectType, plID, psIDName);
}

ObjectRef kvDirectTag::GetObjectItemName(std::u16string_view psName, std::int32_t plObjectType, std::int32_t plID,
                                         std::u16string_view psIDName) {
    return getItem(named(psName, itemKey(plObjectType)), plObjectType, plID, psIDName);
}

void kvDirectTag::SetObjectName(std::u16string_view psName, const ObjectRef& poObject) {
    if (!poObject) return;
    quietly([&] {
        const Access on = access();
        const std::u16string type = poObject->typeName();
        const std::u16string upperType = upperCase(type);
        if (upperType == u"NOTHING" || upperType == u"OBJECT") return false;
        std::int32_t identifier = 0;
        if (upperType == u"KVOBJECTITEMS" || upperType == u"KVOBJECTITEM") {
            identifier = automation::toLong(poObject->invoke(u"ItemAccount", InvokeKind::get, {})).value_or(0);
        }
        on.cache.put(psName.empty() ? type : named(psName, type), poObject, identifier);
        return true;
    });
}

void kvDirectTag::SetObject(const ObjectRef& poObject) {
    SetObjectName({}, poObject);
}

void kvDirectTag::RecordErrorLog(std::int32_t) {
    quietly([&] {
        const Access on = access();
        recordErrorLog(*on.owner->directErrorLog(), *on.hostDatabase());
        return true;
    });
}

void kvDirectTag::remove(const std::u16string& key) {
    quietly([&] { return access().cache.remove(key), true; });
}

void kvDirectTag::RemoveObjectItem(std::int32_t plObjectType, std::u16string_view psName) {
    if (plObjectType != 0) {
        remove(itemKey(plObjectType));
    } else {
        remove(psName.empty() ? u"kvObjectItem" : named(psName, u"kvObjectItem"));
    }
}

void kvDirectTag::RemoveObject(std::u16string_view psClassName, std::u16string_view psName) {
    const std::u16string key = shortClassName(psClassName);
    remove(psName.empty() ? key : named(psName, key));
}

}  // namespace velmor
