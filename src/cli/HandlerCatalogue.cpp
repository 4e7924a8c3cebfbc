#include "cli/HandlerCatalogue.h"

#include "handlers/BuiltInCatalogue.h"
#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "properties/privProperties.h"

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
        handler.builtIn = handler.name == BuiltInCatalogue::handler && handler.className.empty();
        target.push_back(std::move(handler));
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
    handler.available = handler.builtIn || info.TagAvailable(handler.name);
    if (!handler.available) return;
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
