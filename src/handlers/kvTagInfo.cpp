#include "handlers/kvTagInfo.h"

#include <algorithm>

#include "automation/Errors.h"
#include "handlers/ITag4.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor {

using automation::quietly;

// A built-in command that a template may contain.
struct BuiltInCommand {
    std::u16string_view handler, name, parameters, syntax;
};

namespace {

constexpr BuiltInCommand commands[] = {
    {builtInHandler, u"SETPROPERTY", u"PREPROCESS:", u"TAG>SETPROPERTY:name=value:[PREPROCESS=(true):]"},
    {builtInHandler, u"INCLUDE", u"", u"TAG>INCLUDE=[path\\]includefile:"},
    {builtInHandler, u"SETPATH", u"", u"TAG>SETPATH=path:"},
    {builtInHandler, u"PROPERTY", u"", u"TAG>PROPERTY:name=default:"},
    {rowsHandler, u"LIST", u"ROW:TEXT:BETWEEN:", u"ROWS>LIST=list:ROW=file or TEXT=text:[BETWEEN=text:]"},
};

std::u16string commandsOf(std::u16string_view handler) {
    std::u16string names;
    for (const BuiltInCommand& each : commands) {
        if (each.handler == handler) names.append(each.name).append(u":");
    }
    return names;
}

BuiltInCommand commandOf(std::u16string_view handler, std::u16string_view name) noexcept {
    const auto isSought = [&](const BuiltInCommand& each) { return each.handler == handler && each.name == name; };
    const auto* const found = std::ranges::find_if(commands, isSought);
    return found == std::end(commands) ? BuiltInCommand{} : *found;
}

std::u16string_view before(std::u16string_view text, char16_t end) noexcept {
    return text.substr(0, text.find(end));
}

HandlerAddress addressOf(std::u16string_view psHandlerName) {
    return HandlerAddress::parse(before(psHandlerName, u'>'));
}

std::u16string commandName(std::u16string_view psCommand) {
    return upperCase(before(before(psCommand, u':'), u'='));
}

}  // namespace

std::vector<std::u16string> catalogueItems(std::u16string_view list) {
    std::vector<std::u16string> items;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(u':'), list.size());
        if (end > 0) items.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
}

bool kvTagInfo::TagRegistered(std::u16string_view psHandlerName) const {
    return quietly([&] { return !addressOf(psHandlerName).className(services_.registry).empty(); });
}

bool kvTagInfo::TagAvailable(std::u16string_view psHandlerName) const {
    return quietly([&] {
        const std::u16string className = addressOf(psHandlerName).className(services_.registry);
        return !className.empty() && services_.objects.create(className) != nullptr;
    });
}

// --- lists of handlers ---

std::shared_ptr<privProperties> kvTagInfo::HandlerList2(std::u16string_view psSubHandler, bool pbFiltered,
                                                        bool pbIncludeSubHandlers) const {
    auto list = std::make_shared<privProperties>(services_);
    quietly([&] { addHandlers(*list, psSubHandler, pbFiltered, pbIncludeSubHandlers); });
    return list;
}

void kvTagInfo::addHandlers(privProperties& list, std::u16string_view psSubHandler, bool pbFiltered,
                            bool pbIncludeSubHandlers) const {
    const platform::Registry& registry = services_.registry;
    const std::u16string key = psSubHandler.empty()
                                   ? std::u16string(handlersKey)
                                   : std::u16string(subHandlersKey) + u'\\' + std::u16string(psSubHandler);
    const auto isListed = [&](std::u16string_view name) {
        return !pbFiltered || registry.value((key + u'\\').append(name), u"Hide").value_or(u"0") == u"0";
    };
    for (const std::u16string& name : registry.valueNames(key)) {
        // The key's default value is not a handler.
        if (!name.empty() && isListed(name)) list.AddStr(name, registry.value(key, name).value_or(std::u16string()));
    }
    if (pbIncludeSubHandlers) {
        for (const std::u16string& group : registry.subkeys(subHandlersKey)) {
            if (isListed(group)) list.AddStr(group, {});
        }
    }
    // Replaces a registered handler of that name, which no tag can call.
    if (psSubHandler.empty() && isListed(builtInHandler)) list.AddStr(builtInHandler, {}, true);
}

std::u16string kvTagInfo::HandlerListString2(std::u16string_view psSubHandler, bool pbFiltered) const {
    const std::shared_ptr<privProperties> list = HandlerList2(psSubHandler, pbFiltered);
    std::u16string names;
    for (std::int32_t index = 1; index <= list->Count(); ++index) {
        names += list->Item(index)->Name();
        names += u':';
    }
    return names;
}

// --- questions ---

void kvTagInfo::Database(automation::ObjectRef poDatabase) {
    if (!poDatabase || poDatabase->typeName() != u"kvDatabase") throw Error(13, u"Type Mismatch");
    database_ = std::move(poDatabase);
}

std::u16string kvTagInfo::ask(std::u16string_view psHandlerName, std::u16string_view member,
                              std::u16string_view BuiltInCommand::*builtIn,
                              std::initializer_list<std::u16string_view> texts) const {
    return quietly([&]() -> std::u16string {
        const HandlerAddress address = addressOf(psHandlerName);
        const std::u16string className = address.className(services_.registry);
        const bool isBuiltIn = address.name == builtInHandler || (className.empty() && address.name == rowsHandler);
        if (isBuiltIn && address.group.empty()) {
            if (texts.size() == 0) return commandsOf(address.name);
            return std::u16string(builtIn ? commandOf(address.name, *texts.begin()).*builtIn : u"");
        }
        if (className.empty()) return {};
        return ITag4(services_.objects.create(className)).catalogue(member, texts, address.name, database_);
    });
}

std::u16string kvTagInfo::CommandList(std::u16string_view psHandlerName) const {
    return ask(psHandlerName, u"CommandList", nullptr, {});
}

std::u16string kvTagInfo::ParameterList(std::u16string_view psHandlerName, std::u16string_view psCommand) const {
    return ask(psHandlerName, u"ParameterList", &BuiltInCommand::parameters, {commandName(psCommand)});
}

std::u16string kvTagInfo::CommandSyntax(std::u16string_view psHandlerName, std::u16string_view psCommand) const {
    return ask(psHandlerName, u"SyntaxString", &BuiltInCommand::syntax, {commandName(psCommand)});
}

std::u16string kvTagInfo::CommandDescription(std::u16string_view psHandlerName, std::u16string_view psCommand) const {
    return ask(psHandlerName, u"CommandDescription", nullptr, {commandName(psCommand)});
}

std::u16string kvTagInfo::ParameterValueList(std::u16string_view psHandlerName, std::u16string_view psCommand,
                                             std::u16string_view psParameter) const {
    return ask(psHandlerName, u"ParameterValueList", nullptr, {commandName(psCommand), psParameter});
}

}  // namespace velmor
