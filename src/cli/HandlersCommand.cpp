#include "cli/HandlersCommand.h"

#include "cli/Failure.h"
#include "cli/HandlerCatalogue.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::size_t kLongestName = 200;

std::string shown(std::u16string_view text) {
    return toUtf8(onOneLine(text, kLongestName));
}

std::string handlerText(const HandlerEntry& handler) {
    std::string text = shown(handler.name) + "  " + (handler.builtIn ? "(built in)" : shown(handler.className));
    text += handler.failure.empty() ? "\n" : "  (not available)\n";
    for (const HandlerCommand& command : handler.commands) {
        text += "  " + shown(command.name) + "  " + shown(command.syntax) + "\n";
        if (!command.description.empty()) text += "      " + shown(command.description) + "\n";
        for (const HandlerParameter& parameter : command.parameters) {
            text += "      " + shown(parameter.name);
            const char* separator = " = ";
            for (const std::u16string& value : parameter.values) {
                text += separator + shown(value);
                separator = ", ";
            }
            text += "\n";
        }
    }
    return text;
}

Json commandJson(const HandlerCommand& command) {
    Json parameters = Json::array();
    for (const HandlerParameter& parameter : command.parameters) {
        Json values = Json::array();
        for (const std::u16string& value : parameter.values) values.push_back(toUtf8(value));
        parameters.push_back({{"name", toUtf8(parameter.name)}, {"values", std::move(values)}});
    }
    return {{"name", toUtf8(command.name)},
            {"syntax", toUtf8(command.syntax)},
            {"description", toUtf8(command.description)},
            {"parameters", std::move(parameters)}};
}

Json handlerJson(const HandlerEntry& handler) {
    Json commands = Json::array();
    for (const HandlerCommand& command : handler.commands) commands.push_back(commandJson(command));
    return {{"name", toUtf8(handler.name)},
            {"class", toUtf8(handler.className)},
            {"builtIn", handler.builtIn},
            {"available", handler.failure.empty()},
            {"commands", std::move(commands)}};
}

std::string listText(const std::vector<HandlerEntry>& handlers) {
    std::string text;
    for (const HandlerEntry& handler : handlers) text += handlerText(handler);
    return text;
}

std::string listJson(const std::vector<HandlerEntry>& handlers) {
    JsonList list("handlers");
    for (const HandlerEntry& handler : handlers) list.add(handlerJson(handler));
    return std::move(list).text();
}

}  // namespace

ExitCode runHandlers(platform::Services& services, const HandlersOptions& options) {
    const bool isOne = !options.name.empty();
    std::vector<HandlerEntry> handlers = readHandlers(services, options.all || isOne);
    if (isOne) {
        const std::u16string name = fromUtf8(options.name);
        std::erase_if(handlers, [&](const HandlerEntry& entry) { return !equalIgnoringCase(entry.name, name); });
        if (handlers.empty()) throw Failure(exitFile, options.name + ": this handler is not registered");
    }
    for (HandlerEntry& handler : handlers) readCommands(services, handler);
    writeAll(services.files, "-", options.json ? listJson(handlers) : listText(handlers));
    ExitCode code = exitDone;
    for (const HandlerEntry& handler : handlers) {
        if (handler.failure.empty()) continue;
        report(shown(handler.name) + ": " + shown(handler.failure));
        code = exitReported;
    }
    return code;
}

}  // namespace velmor::cli
