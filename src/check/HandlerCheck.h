#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/Suggestion.h"
#include "check/TagParts.h"
#include "core/BuiltInCommands.h"
#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "text/Compare.h"

namespace velmor {

// Finds tags whose handler is not registered, and commands, parameters and values that the handler's catalogue does
// not name. A handler that describes nothing is believed. Each handler is asked once for each of its commands.
class HandlerCheck {
public:
    HandlerCheck(platform::Services& services, DiagnosticList& found)
        : services_(services), info_(services), found_(found) {}

    void check(const TagParts& tag) {
        if (!isLiteral(tag.handler()) || !isLiteral(tag.command())) return;
        Handler& handler = handlerOf(tag.handler());
        if (!handler.isKnown) {
            return found_.add(DiagnosticCode::unknownHandler, tag, u"no handler " + tag.handler() + u" is registered",
                              didYouMean(tag.handler(), allHandlers()));
        }
        if (handler.commands.empty()) return;
        if (!containsName(handler.commands, tag.command())) {
            const std::u16string message = tag.command().empty()
                                               ? u"the tag names no command of " + tag.handler()
                                               : u"handler " + tag.handler() + u" has no command " + tag.command();
            return found_.add(DiagnosticCode::unknownCommand, tag, message,
                              didYouMean(tag.command(), handler.commands));
        }
        checkParameters(tag, parametersOf(handler, tag));
    }

private:
    static bool containsName(const std::vector<std::u16string>& names, std::u16string_view name) {
        return std::any_of(names.begin(), names.end(), [&](const auto& each) { return equalIgnoringCase(each, name); });
    }

    struct Parameter {
        std::u16string name;
        std::vector<std::u16string> values;  // to choose from; empty when any value will do
    };
    struct Handler {
        bool isKnown = false;
        std::vector<std::u16string> commands;
        std::map<std::u16string, std::vector<Parameter>> parameters;  // of the commands that were asked for
    };

    Handler& handlerOf(const std::u16string& name) {
        const auto [place, isNew] = handlers_.try_emplace(name);
        Handler& handler = place->second;
        if (!isNew) return handler;
        if (name == builtInHandler) {
            handler.isKnown = true;
            handler.commands = commandNames();
        } else {
            handler.isKnown = info_.TagRegistered(name) || name == rowsHandler;
            if (handler.isKnown) handler.commands = catalogueItems(info_.CommandList(name));
        }
        return handler;
    }

    const std::vector<Parameter>& parametersOf(Handler& handler, const TagParts& tag) {
        const auto [place, isNew] = handler.parameters.try_emplace(tag.command());
        if (!isNew) return place->second;
        for (const std::u16string& item : catalogueItems(info_.ParameterList(tag.handler(), tag.command()))) {
            const std::u16string name = item.substr(0, item.find(u'='));
            place->second.push_back(
                {name, catalogueItems(info_.ParameterValueList(tag.handler(), tag.command(), name))});
        }
        return place->second;
    }

    std::vector<std::u16string> allHandlers() {
        std::vector<std::u16string> names = catalogueItems(info_.HandlerListString());
        for (const std::u16string& group : services_.registry.subkeys(subHandlersKey)) {
            for (const std::u16string& name : catalogueItems(info_.HandlerListString2(group, false))) {
                names.push_back(group + u'-' + name);
            }
        }
        return names;
    }

    // The built-in commands take a name of the author's first, where they take parameters.
    void checkParameters(const TagParts& tag, const std::vector<Parameter>& parameters) {
        if (parameters.empty()) return;
        const std::size_t first = tag.handler() == builtInHandler ? 1 : 0;
        for (std::size_t index = first; index < tag.parameters().size(); ++index) {
            checkParameter(tag, tag.parameters()[index], parameters);
        }
    }

    void checkParameter(const TagParts& tag, const TagElement& element, const std::vector<Parameter>& parameters) {
        const std::u16string name = element.name();
        if (name.empty() || !isLiteral(name)) return;
        const auto known = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const Parameter& each) { return equalIgnoringCase(each.name, name); });
        if (known == parameters.end()) {
            std::vector<std::u16string> names;
            for (const Parameter& parameter : parameters) names.push_back(parameter.name);
            return found_.add(DiagnosticCode::unknownParameter, tag,
                              u"command " + tag.command() + u" has no parameter " + name, didYouMean(name, names));
        }
        if (known->values.empty()) return;
        const std::u16string value = element.value(services_);
        if (!isLiteral(value) || containsName(known->values, value)) return;
        found_.add(DiagnosticCode::unsuitableValue, tag,
                   u"parameter " + name + u" does not take the value \"" + value + u"\"",
                   didYouMean(value, known->values));
    }

    platform::Services& services_;
    const kvTagInfo info_;
    DiagnosticList& found_;
    std::map<std::u16string, Handler> handlers_;
};

}  // namespace velmor
