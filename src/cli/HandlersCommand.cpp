#include "cli/Commands.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "check/TemplatePlaces.h"
#include "cli/ErrorReport.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "core/Markup.h"
#include "core/kvTag.h"
#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

struct Handler {
    std::u16string name;       // as it is written in tags
    std::u16string className;  // "" for the built-in handler
    std::u16string failure;    // why no object of its class can be created; "" when one can

    bool isBuiltIn() const {
        return className.empty() && (equalIgnoringCase(name, builtInHandler) || name == rowsHandler);
    }
};

void addHandlers(std::vector<Handler>& target, const privProperties& list, const std::u16string& prefix) {
    for (std::int32_t index = 1; index <= list.Count(); ++index) {
        target.push_back({prefix + list.Item(index)->Name(), list.Item(index)->ValueStr(), {}});
    }
}

// Handlers without a group first, then group by group.
std::vector<Handler> readHandlers(platform::Services& services, bool all) {
    const kvTagInfo info(services);
    std::vector<Handler> handlers;
    const auto ungrouped = info.HandlerList2({}, !all);
    if (!ungrouped->Item(rowsHandler)) ungrouped->AddStr(rowsHandler, {});
    addHandlers(handlers, *ungrouped, {});
    for (const std::u16string& group : services.registry.subkeys(subHandlersKey)) {
        addHandlers(handlers, *info.HandlerList2(group, !all), group + u'-');
    }
    return handlers;
}

std::u16string failureToCreate(platform::Services& services, const Handler& handler) {
    if (handler.isBuiltIn()) return {};
    const std::u16string className = HandlerAddress::parse(handler.name).className(services.registry);
    if (className.empty()) return u"its class name is empty";
    try {
        services.objects.create(className);
        return {};
    } catch (const Error& error) {
        return error.description();
    }
}

Json parametersJson(const kvTagInfo& info, const std::u16string& handler, const std::u16string& command) {
    Json parameters = Json::array();
    for (const std::u16string& item : catalogueItems(info.ParameterList(handler, command))) {
        const std::u16string name = item.substr(0, item.find(u'='));
        Json values = Json::array();
        for (const std::u16string& value : catalogueItems(info.ParameterValueList(handler, command, name))) {
            values.push_back(toUtf8(value));
        }
        parameters.push_back({{"name", toUtf8(name)}, {"values", std::move(values)}});
    }
    return parameters;
}

// Asks the handler for its commands.
Json handlerJson(platform::Services& services, const Handler& handler) {
    const kvTagInfo info(services);
    Json commands = Json::array();
    for (const std::u16string& name : catalogueItems(handler.failure.empty() ? info.CommandList(handler.name) : u"")) {
        commands.push_back({{"name", toUtf8(name)},
                            {"syntax", toUtf8(info.CommandSyntax(handler.name, name))},
                            {"description", toUtf8(info.CommandDescription(handler.name, name))},
                            {"parameters", parametersJson(info, handler.name, name)}});
    }
    return {{"name", toUtf8(handler.name)},
            {"class", toUtf8(handler.className)},
            {"builtIn", handler.isBuiltIn()},
            {"available", handler.failure.empty()},
            {"commands", std::move(commands)}};
}

std::string shownText(const Json& text) {
    return shown(fromUtf8(text.get<std::string>()));
}

std::string listText(const Json& handler) {
    std::string text =
        shownText(handler["name"]) + "  " + (handler["builtIn"] ? "(built in)" : shownText(handler["class"]));
    text += handler["available"] ? "\n" : "  (not available)\n";
    for (const Json& command : handler["commands"]) {
        text += "  " + shownText(command["name"]) + "  " + shownText(command["syntax"]) + "\n";
        if (!command["description"].get_ref<const std::string&>().empty())
            text += "      " + shownText(command["description"]) + "\n";
        for (const Json& parameter : command["parameters"]) {
            text += "      " + shownText(parameter["name"]);
            const char* separator = " = ";
            for (const Json& value : parameter["values"]) text += std::exchange(separator, ", ") + shownText(value);
            text += "\n";
        }
    }
    return text;
}

void printHandlers(platform::Services& services, const std::vector<Handler>& handlers, bool json) {
    if (!json) {
        std::string text;
        for (const Handler& handler : handlers) text += listText(handlerJson(services, handler));
        return writeAll(services.files, "-", text);
    }
    JsonList list("handlers");
    for (const Handler& handler : handlers) list.add(handlerJson(services, handler));
    list.end();
}

// Evaluates a tag without a template.
ExitCode testHandler(platform::Services& services, const std::string& handler, const std::string& text) {
    const std::u16string name = fromUtf8(handler) + handlerSeparator + fromUtf8(text);
    const TemplatePlaces places(name);
    ErrorReport errors(handler, places);
    const auto tag = std::make_shared<kvTag>(services);
    tag->Name(name);
    writeAll(services.files, "-", toUtf8(tag->Result()) + "\n");
    tag->Dispose();
    return errors.print() ? exitReported : exitDone;
}

}  // namespace

ExitCode runHandlers(platform::Services& services, const HandlersOptions& options) {
    if (!options.test.empty()) return testHandler(services, options.test[0], options.test[1]);
    const bool isOne = !options.name.empty();
    std::vector<Handler> handlers = readHandlers(services, options.all || isOne);
    if (isOne) {
        const std::u16string name = fromUtf8(options.name);
        std::erase_if(handlers, [&](const Handler& handler) { return !equalIgnoringCase(handler.name, name); });
        if (handlers.empty()) throw Failure(exitFile, options.name + ": this handler is not registered");
    }
    for (Handler& handler : handlers) handler.failure = failureToCreate(services, handler);
    printHandlers(services, handlers, options.json);
    ExitCode code = exitDone;
    for (const Handler& handler : handlers) {
        if (handler.failure.empty()) continue;
        report(cli::shown(handler.name) + ": " + cli::shown(handler.failure));
        code = exitReported;
    }
    return code;
}

}  // namespace velmor::cli
