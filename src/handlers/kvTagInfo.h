#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;
struct BuiltInCommand;

// The items of one of the catalogue's lists.
std::vector<std::u16string> catalogueItems(std::u16string_view list);

// The catalogue of handlers: which are registered, and their commands. Reads the
// registry on every call. Each member that needs a handler creates it, calls it and releases it.
//
// Lists are texts whose items each end with ":". Handlers are named as in a tag, "NAME" or
// "GROUP-NAME"; a ">" and everything after it is ignored. Commands may be given as in a tag:
// everything from the first ":" or "=" on is ignored. Names match without regard to case.
//
// No member raises, except setting Database. A failure to read, create or ask gives "", False or an
// empty collection.
class kvTagInfo final : public automation::Object {
public:
    explicit kvTagInfo(platform::Services& services) : services_(services) {}

    // Registered, and its class can be created.
    bool TagAvailable(std::u16string_view psHandlerName) const;
    // The registry names a class for it. False for the built-in handler.
    bool TagRegistered(std::u16string_view psHandlerName) const;

    std::u16string CommandList(std::u16string_view psHandlerName) const;
    std::u16string ParameterList(std::u16string_view psHandlerName, std::u16string_view psCommand = {}) const;

    std::u16string HandlerListString() const { return HandlerListString2({}, false); }  // of all handlers
    std::u16string HandlerListString2(std::u16string_view psSubHandler = {}, bool pbFiltered = true) const;
    std::shared_ptr<privProperties> HandlerList() const { return HandlerList2({}, false); }
    // The handlers of the group; for an empty group name, those outside any group and the built-in
    // one. Each property is named after a handler and holds its class name ("" for the built-in one).
    // pbIncludeSubHandlers adds the names of the groups, each with "". pbFiltered leaves out handlers
    // whose own key below the handlers' key has a value "Hide" other than "0".
    std::shared_ptr<privProperties> HandlerList2(std::u16string_view psSubHandler = {}, bool pbFiltered = true,
                                                 bool pbIncludeSubHandlers = false) const;
    std::u16string HandlerListFilteredString() const { return HandlerListString2(); }
    std::shared_ptr<privProperties> HandlerListFiltered() const { return HandlerList2(); }

    std::u16string CommandSyntax(std::u16string_view psHandlerName, std::u16string_view psCommand) const;
    std::u16string CommandDescription(std::u16string_view psHandlerName, std::u16string_view psCommand) const;

    // Passed to handlers of level 4 and above with every call. Setting raises 13 unless the
    // object's type name is "kvDatabase", also for Nothing.
    automation::ObjectRef Database() const { return database_; }
    void Database(automation::ObjectRef poDatabase);

    std::u16string ParameterValueList(std::u16string_view psHandlerName, std::u16string_view psCommand,
                                      std::u16string_view psParameter) const;

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvTagInfo"; }

private:
    void addHandlers(privProperties& list, std::u16string_view psSubHandler, bool pbFiltered,
                     bool pbIncludeSubHandlers) const;
    // `builtIn`: what answers for a built-in handler; null for nothing. The texts begin with a command, if any.
    std::u16string ask(std::u16string_view psHandlerName, std::u16string_view member,
                       std::u16string_view BuiltInCommand::*builtIn,
                       std::initializer_list<std::u16string_view> texts) const;

    platform::Services& services_;
    automation::ObjectRef database_;
};

}  // namespace velmor
