#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "direct/DirectOwner.h"
#include "direct/ObjectCache.h"

namespace velmor {

// The host's database objects for one tag. What is opened is kept in the tag's Properties, so that
// later tags of the same document get the same object: the object as "_" and a key, its identifier
// as the key and ".ID". The keys, with S for the class name behind its first ".", or all of it, and
// T for the object type:
//
//     GetObject           S                        GetObjectName       name_S
//     GetObjectItem       kvObjectItem_T           GetObjectItemName   name_kvObjectItem_T
//     SetObject           the type's name          SetObjectName       name_the type's name
//     RemoveObject        S, or name_S             RemoveObjectItem    kvObjectItem_T, or without a
//                                                                      type name_kvObjectItem,
//                                                                      or kvObjectItem
//
// The tag's collection and database are fetched once, on first need. The tag itself is not kept
// alive; when it is gone, or was disposed, every member does nothing.
//
// No member raises: what the host's objects raise ends the member, and a getter answers Nothing.
class kvDirectTag final : public automation::Object {
public:
    explicit kvDirectTag(std::weak_ptr<DirectOwner> owner) : owner_(std::move(owner)) {}

    // A plID of 0 stands for the tag's parameter psIDName. The object that is kept is given when its
    // identifier is the one asked for, or none is. Else one is opened: a class name with a "." is
    // created as it stands, another one is resolved by the database's type definitions; it gets the
    // database and the identifier, and is kept when it says that it is open. Without an identifier
    // nothing is opened.
    automation::ObjectRef GetObject(std::u16string_view psClassName, std::int32_t plID = 0,
                                    std::u16string_view psIDName = u"ID");
    // Several objects of one class side by side.
    automation::ObjectRef GetObjectName(std::u16string_view psName, std::u16string_view psClassName,
                                        std::int32_t plID = 0, std::u16string_view psIDName = u"ID");
    // The same with the database's GetObjectItem, which is asked without an identifier, too.
    automation::ObjectRef GetObjectItem(std::int32_t plObjectType, std::int32_t plID = 0,
                                        std::u16string_view psIDName = u"ID");
    automation::ObjectRef GetObjectItemName(std::u16string_view psName, std::int32_t plObjectType,
                                            std::int32_t plID = 0, std::u16string_view psIDName = u"ID");

    // Keeps an object that the caller holds, unless it is Nothing or its type is just "Object". The
    // identifier is an object item's ItemAccount, 0 for every other object.
    void SetObjectName(std::u16string_view psName, const automation::ObjectRef& poObject);
    void SetObject(const automation::ObjectRef& poObject);

    // Calls the database's LogEvent (name, message, error number, 64) for each entry of the tag's
    // error log. The first failure ends it; the log stays as it is. plMode has no effect.
    void RecordErrorLog(std::int32_t plMode = 0);

    void RemoveObjectItem(std::int32_t plObjectType = 0, std::u16string_view psName = {});
    void RemoveObject(std::u16string_view psClassName, std::u16string_view psName = {});

    // Lets the tag, its collection and its database go.
    void cleanUp() noexcept;

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvDirectTag"; }

private:
    struct Access;

    Access access();
    automation::ObjectRef getObject(const std::u16string& key, std::u16string_view psClassName, std::int32_t plID,
                                    std::u16string_view psIDName);
    automation::ObjectRef getItem(const std::u16string& key, std::int32_t plObjectType, std::int32_t plID,
                                  std::u16string_view psIDName);
    void remove(const std::u16string& key);

    std::weak_ptr<DirectOwner> owner_;
    ObjectCache cache_;  // once fetched
    automation::ObjectRef database_;
};

}  // namespace velmor
