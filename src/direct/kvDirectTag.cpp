#include "direct/kvDirectTag.h"

#include "automation/Convert.h"
#include "automation/Errors.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {

using automation::call;
using automation::InvokeKind;
using automation::ObjectRef;
using automation::quietly;
using automation::textOrError;
using automation::Variant;

namespace {

std::u16string shortClassName(std::u16string_view className) {
    return std::u16string(className.substr(className.find(u'.') + 1));
}

std::u16string named(std::u16string_view psName, std::u16string_view key) {
    return std::u16string(psName).append(u"_").append(key);
}

std::u16string namedIfAny(std::u16string_view psName, std::u16string_view key) {
    return psName.empty() ? std::u16string(key) : named(psName, key);
}

std::u16string itemKey(std::int32_t plObjectType) {
    return u"kvObjectItem_" + automation::toText(Variant(plObjectType)).value_or(std::u16string());
}

// A member that must answer with an object.
ObjectRef objectOf(const Variant& answer) {
    ObjectRef object = answer.object();
    if (!object) throw Error(13);
    return object;
}

// Resolves a name without a "." through the database's type definitions. "" if they do not know it.
std::u16string definedClass(const ObjectRef& database, std::u16string_view psClassName) {
    const ObjectRef system = objectOf(database->invoke(u"System", InvokeKind::get, {}));
    const ObjectRef definition = objectOf(call(*system, u"GetObjectTypeDef", psClassName));
    if (!automation::toBoolean(definition->invoke(u"IsDefined", InvokeKind::get, {})).value_or(false)) return {};
    return automation::toText(definition->invoke(u"ClassName", InvokeKind::get, {})).value_or(std::u16string());
}

std::u16string objectName(std::u16string_view key) {
    return std::u16string(u"_").append(key);
}

std::u16string identifierName(std::u16string_view key) {
    return std::u16string(key).append(u".ID");
}

void logEvent(automation::Object& database, privProperty& entry) {
    constexpr std::int32_t category = 64;  // the host database's own number
    const PropertiesRef details = entry.Properties();
    std::u16string message = entry.ValueStr();
    message += u"\r\nTag Data: " + textOrError(details->GetValue(u"TagData", u"-"));
    message += u"\r\nErr Data: " + textOrError(details->GetValue(u"ErrData", u"-"));
    message += u"\r\nTag Error Date: " + textOrError(details->GetValue(u"DateTime", 0));
    const std::int32_t number = automation::toLong(details->GetValue(u"Err", 0)).value_or(0);
    call(database, u"LogEvent", entry.Name(), message, number, category);
}

}  // namespace

// The objects that a member uses. It holds references, as the host's objects may dispose the tag meanwhile.
struct kvDirectTag::Access {
    std::shared_ptr<DirectOwner> owner;
    ObjectRef properties;  // the tag's own collection, or a host's
    ObjectRef database;

    std::int32_t identifier(std::u16string_view key) const {
        return automation::toLong(call(*properties, u"GetValueLng", identifierName(key), 0)).value_or(0);
    }
    void put(std::u16string_view key, const ObjectRef& object, std::int32_t identifier) const {
        call(*properties, u"AddObject", objectName(key), object, true);
        call(*properties, u"AddLng", identifierName(key), identifier, true);
    }

    std::int32_t requested(std::int32_t plID, std::u16string_view psIDName) const {
        if (plID != 0) return plID;
        return automation::toLong(Variant(owner->directElement(psIDName))).value_or(0);
    }
    // Null when the kept object has another identifier.
    ObjectRef kept(const std::u16string& key, std::int32_t identifier) const {
        const ObjectRef found = call(*properties, u"GetValueObject", objectName(key)).object();
        return identifier == 0 || this->identifier(key) == identifier ? found : nullptr;
    }
    const ObjectRef& hostDatabase() const {
        if (!database) throw Error(13);
        return database;
    }
};

// Raises when the tag is gone.
kvDirectTag::Access kvDirectTag::access() {
    const std::shared_ptr<DirectOwner> owner = owner_.lock();
    if (!owner) throw Error(13);
    if (!properties_) {
        properties_ = owner->directProperties();
        database_ = owner->directDatabase();
    }
    return {owner, properties_, database_};
}

void kvDirectTag::cleanUp() noexcept {
    owner_.reset();
    properties_.reset();
    database_.reset();
}

ObjectRef kvDirectTag::getObject(const std::u16string& key, std::u16string_view psClassName, std::int32_t plID,
                                 std::u16string_view psIDName) {
    return quietly([&]() -> ObjectRef {
        const Access on = access();
        std::int32_t identifier = on.requested(plID, psIDName);
        if (ObjectRef object = on.kept(key, identifier)) return object;
        if (identifier == 0) identifier = on.identifier(key);
        if (identifier == 0) return nullptr;

        const bool isClass = psClassName.find(u'.') != psClassName.npos;
        const std::u16string className =
            isClass ? std::u16string(psClassName) : definedClass(on.hostDatabase(), psClassName);
        if (className.empty()) return nullptr;
        ObjectRef object = on.owner->directServices().objects.create(className);
        Variant database[] = {Variant(on.database)};
        object->invoke(u"Database", InvokeKind::set, database);
        Variant opened[] = {Variant(identifier)};
        const Variant isOpen = object->invoke(u"OpenItem", InvokeKind::method, opened);
        if (!automation::toBoolean(isOpen).value_or(false)) return nullptr;
        on.put(key, object, automation::toLong(opened[0]).value_or(identifier));
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
        const std::int32_t identifier = on.requested(plID, psIDName);
        if (ObjectRef object = on.kept(key, identifier)) return object;
        ObjectRef object = call(*on.hostDatabase(), u"GetObjectItem", plObjectType, identifier).object();
        if (object) on.put(key, object, identifier);
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
        if (upperType == u"NOTHING" || upperType == u"OBJECT") return;
        std::int32_t identifier = 0;
        if (upperType == u"KVOBJECTITEMS" || upperType == u"KVOBJECTITEM") {
            identifier = automation::toLong(poObject->invoke(u"ItemAccount", InvokeKind::get, {})).value_or(0);
        }
        on.put(namedIfAny(psName, type), poObject, identifier);
    });
}

void kvDirectTag::RecordErrorLog(std::int32_t) {
    quietly([&] {
        const Access on = access();
        const ObjectRef database = on.hostDatabase();
        // The database may add to the log meanwhile.
        std::vector<PropertyRef> entries;
        const auto log = on.owner->directErrorLog();
        for (std::int32_t index = 1; index <= log->Count(); ++index) entries.push_back(log->Item(index));
        for (const PropertyRef& entry : entries) logEvent(*database, *entry);
    });
}

void kvDirectTag::remove(const std::u16string& key) {
    quietly([&] {
        const Access on = access();
        call(*on.properties, u"Remove", objectName(key));
        call(*on.properties, u"Remove", identifierName(key));
    });
}

void kvDirectTag::RemoveObjectItem(std::int32_t plObjectType, std::u16string_view psName) {
    remove(plObjectType != 0 ? itemKey(plObjectType) : namedIfAny(psName, u"kvObjectItem"));
}

void kvDirectTag::RemoveObject(std::u16string_view psClassName, std::u16string_view psName) {
    remove(namedIfAny(psName, shortClassName(psClassName)));
}

}  // namespace velmor
