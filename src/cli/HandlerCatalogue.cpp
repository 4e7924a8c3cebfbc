#include "cli/HandlerCatalogue.h"

#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

// The items of a list, each of which ends with ":".
std::vector<std::u16string> itemsOf(std::u16string_view list) {
    std::vector<std::u16string> items;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(u':'), list.size());
        if (end > 0) items.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
}

void addHandlers(std::vector<HandlerEntry>& target, const privProperties& list, const std::u16string& prefix) {
    for (std::int32_t index = 1; index <= list.Count(); ++index) {
        HandlerEntry handler;
        handler.name = prefix + list.Item(index)->Name();
        handler.className = list.Item(index)->ValueStr();
        handler.builtIn = handler.className.empty() && equalIgnoringCase(handler.name, kBuiltInHandler);
        target.push_back(std::move(handler));
    }
}

std::u16string failureToCreate(platform::Services& services, const HandlerEntry& handler) {
    if (handler.builtIn) return {};
    const std::u16string className = HandlerAddress::parse(handler.name).className(services.registry);
    if (className.empty()) return u"its class name is empty";
    try {
        ITag4::create(services.objects, className);
        return {};
    } catch (const Error& error) {
        return error.description();
    }
}

}  // namespace

std::vector<HandlerEntry> readHandlers(platform::Services& services, bool all) {
    const kvTagInfo info(services);
    std::vector<HandlerEntry> handlers;
    addHandlers(handlers, *info.HandlerList2({}, !all), {});
    for (const std::u16string& group : services.registry.subkeys(kSubHandlersKey)) {
        addHandlers(handlers, *info.HandlerList2(group, !all), group + u'-');
    }
    return handlers;
}

void readCommands(platform::Services& services, HandlerEntry& handler) {
    const kvTagInfo info(services);
    handler.failure = failureToCreate(services, handler);
    if (!handler.failure.empty()) return;
    for (const std::u16string& name : itemsOf(info.CommandList(handler.name))) {
        HandlerCommand command{
            name, info.CommandSyntax(handler.name, name), info.CommandDescription(handler.name, name), {}};
        for (const std::u16string& item : itemsOf(info.ParameterList(handler.name, name))) {
            const std::u16string parameter = item.substr(0, item.find(u'='));
            command.parameters.push_back({parameter, itemsOf(info.ParameterValueList(handler.name, name, parameter))});
        }
        handler.commands.push_back(std::move(command));
    }
}

}  // namespace velmor::cli
