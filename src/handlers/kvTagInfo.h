#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;

// The catalogue of handlers: which ones are registered, and what each says of its commands. Reads
// the registry anew on every call; a question creates the handler, asks it and lets it go.
//
// Lists are texts whose items each end with ":". A handler is named as in a tag, "NAME" or
// "GROUP-NAME"; a ">" and what follows it is cut off. A command may be given as it stands in a tag:
// what follows its first ":" or "=" is cut off. Case does not matter.
//
// No member raises, but for setting Database: what cannot be read, created or asked answers "",
// False or an empty collection.
class kvTagInfo final : public automation::Object {
public:
    explicit kvTagInfo(platform::Services& services) : services_(services) {}

    // Registered, and its class can be created.
    bool TagAvailable(std::u16string_view psHandlerName) const;
    // Has a registry value that names a class. The built-in handler has none.
    bool TagRegistered(std::u16string_view psHandlerName) const;

    std::u16string CommandList(std::u16string_view psHandlerName) const;
    std::u16string ParameterList(std::u16string_view psHandlerName, std::u16string_view psCommand = {}) const;

    std::u16string HandlerListString() const;  // all of them
    std::u16string HandlerListString2(std::u16string_view psSubHandler = {}, bool pbFiltered = true) const;
    std::shared_ptr<privProperties> HandlerList() const;
    // The handlers of the group, or those that belong to none and the built-in one. Each property is
    // named after a handler and holds its class name ("" for the built-in one). The names of the
    // groups are added on request, each with "". Filtered, all those are left out that have a value
    // "Hide" other than "0" in the key of their name below the handlers' key.
    std::shared_ptr<privProperties> HandlerList2(std::u16string_view psSubHandler = {}, bool pbFiltered = true,
                                                 bool pbIncludeSubHandlers = false) const;
    std::u16string HandlerListFilteredString() const;
    std::shared_ptr<privProperties> HandlerListFiltered() const;

    std::u16string CommandSyntax(std::u16string_view psHandlerName, std::u16string_view psCommand) const;
    std::u16string CommandDescription(std::u16string_view psHandlerName, std::u16string_view psCommand) const;

    // Handed to handlers of level 4 and above with every question. Setting raises 13 for every
    // object (and for Nothing) whose type name is not "kvDatabase".
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
    bool isHidden(const std::u16string& key, std::u16string_view name) const;
    template <class Question>
    std::u16string ask(std::u16string_view psHandlerName, std::u16string_view builtInAnswer, Question&& question) const;

    platform::Services& services_;
    automation::ObjectRef database_;
};

}  // namespace velmor
