#include "handlers/BuiltInCatalogue.h"

namespace velmor {

namespace {

struct Command {
    std::u16string_view name;
    std::u16string_view parameters;
    std::u16string_view syntax;
};

constexpr Command kCommands[] = {
    {u"SETPROPERTY", u"PREPROCESS:", u"TAG>SETPROPERTY:name=value:[PREPROCESS=(true):]"},
    {u"INCLUDE", u"", u"TAG>INCLUDE=[path\\]includefile:"},
    {u"SETPATH", u"", u"TAG>SETPATH=path:"},
    {u"PROPERTY", u"", u"TAG>PROPERTY:name=default:"},
};

Command commandOf(std::u16string_view name) noexcept {
    for (const Command& command : kCommands) {
        if (command.name == name) return command;
    }
    return {};
}

}  // namespace

std::u16string_view BuiltInCatalogue::parameterList(std::u16string_view psCommand) noexcept {
    return commandOf(psCommand).parameters;
}

std::u16string_view BuiltInCatalogue::syntax(std::u16string_view psCommand) noexcept {
    return commandOf(psCommand).syntax;
}

}  // namespace velmor
