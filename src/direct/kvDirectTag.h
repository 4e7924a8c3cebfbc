#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "direct/DirectOwner.h"

namespace velmor {

// A tag's cache of the host's database objects. An opened object is kept in the tag's Properties, so
// that later tags of the same document get the same object: the object under "_" + key, its
// identifier under key + ".ID". The keys below use S for the part of the class name that follows its
// first "." (the whole name if it has none) and T for the object type:
//
//     GetObject           S                        GetObjectName       name_S
//     GetObjectItem       kvObjectItem_T           GetObjectItemName   name_kvObjectItem_T
//     SetObject           the type's name          SetObjectName       name_the type's name
//     RemoveObject        S, or name_S             RemoveObjectItem    kvObjectItem_T, or without a
//                                                                      type name_kvObjectItem,
//                                                                      or kvObjectItem
//
// The tag's collection and database are fetched once, on first use. The tag itself is not kept
// alive; once it is destroyed or disposed, every member does nothing.
//
// No member raises: an error of a host's object ends the member, and a getter returns Nothing.
class kvDirectTag final : public automation::Object {
public:
    explicit kvDirectTag(std::weak_ptr<DirectOwner> owner) : owner_(std::move(owner)) {}

    // A plID of 0 means: use the value of the tag's parameter psIDName. Returns the kept object if its
    // identifier equals the requested one, or if no identifier is requested. Otherwise opens one: a
    // class name with a "." is created as given, any other is resolved by the database's type
    // definitions. The new object receives the database and the identifier, and is kept if it reports
    // that it is open. Nothing is opened without an identifier.
    automation::ObjectRef GetObject(std::u16string_view psClassName, std::int32_t plID = 0,
                                    std::u16string_view psIDName = u"ID");
    // Several objects of one class, kept under different names.
    automation::ObjectRef GetObjectName(std::u16string_view psName, std::u16string_view psClassName,
                                        std::int32_t plID = 0, std::u16string_view psIDName = u"ID");
    // The same through the database's GetObjectItem, which is also called without an identifier.
    automation::ObjectRef GetObjectItem(std::int32_t plObjectType, std::int32_t plID = 0,
                                        std::u16string_view psIDName = u"ID");
    automation::ObjectRef GetObjectItemName(std::u16string_view psName, std::int32_t plObjectType,
                                            std::int32_t plID = 0, std::u16string_view psIDName = u"ID");

    // Keeps an object of the caller, unless it is Nothing or its type name is "Object". The
    // identifier is the ItemAccount of an object item, and 0 for any other object.
    void SetObjectName(std::u16string_view psName, const automation::ObjectRef& poObject);
    void SetObject(const automation::ObjectRef& poObject) { SetObjectName({}, poObject); }

    // Calls the database's LogEvent (name, message, error number, 64) for each entry of the tag's
    // error log. Stops at the first failure. The log does not change. plMode has no effect.
    void RecordErrorLog(std::int32_t plMode = 0);

    void RemoveObjectItem(std::int32_t plObjectType = 0, std::u16string_view psName = {});
    void RemoveObject(std::u16string_view psClassName, std::u16string_view psName = {});

    // Releases the tag, its collection and its database.
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
    automation::ObjectRef properties_;  // once fetched
    automation::ObjectRef database_;
};

}  // namespace velmor
