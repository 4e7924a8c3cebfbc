#pragma once

#include <string>
#include <vector>

#include "platform/Services.h"

namespace velmor::cli {

// The catalogue of handlers as plain values.
struct HandlerParameter {
    std::u16string name;
    std::vector<std::u16string> values;  // that can be chosen from
};
struct HandlerCommand {
    std::u16string name, syntax, description;
    std::vector<HandlerParameter> parameters;
};
struct HandlerEntry {
    std::u16string name;       // as it is written in tags
    std::u16string className;  // "" for the built-in handler
    bool builtIn = false;
    std::u16string failure;  // why no object of its class can be created; "" when one can
    std::vector<HandlerCommand> commands;
};

// Handlers without a group first, then group by group.
std::vector<HandlerEntry> readHandlers(platform::Services& services, bool all);
// Asks the handler for its commands.
void readCommands(platform::Services& services, HandlerEntry& handler);

}  // namespace velmor::cli
