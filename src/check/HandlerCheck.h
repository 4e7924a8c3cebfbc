#pragma once

#include <map>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/TagParts.h"
#include "handlers/kvTagInfo.h"

namespace velmor {

// Finds tags whose handler is not registered, and commands, parameters and values that the handler's catalogue does
// not name. A handler that describes nothing is believed. Each handler is asked once for each of its commands.
class HandlerCheck {
public:
    HandlerCheck(platform::Services& services, DiagnosticList& found)
        : services_(services), info_(services), found_(found) {}

    void check(const TagParts& tag);

private:
    struct Parameter {
        std::u16string name;
        std::vector<std::u16string> values;  // to choose from; empty when any value will do
    };
    using Commands = std::map<std::u16string, std::vector<Parameter>>;
    struct Handler {
        bool isKnown = false;
        std::vector<std::u16string> commands;
        Commands parameters;  // of the commands that were asked for
    };

    Handler& handlerOf(const std::u16string& name);
    const std::vector<Parameter>& parametersOf(Handler& handler, const TagParts& tag);
    std::vector<std::u16string> allHandlers();
    void checkParameters(const TagParts& tag, const std::vector<Parameter>& parameters);
    void checkParameter(const TagParts& tag, const TagElement& element, const std::vector<Parameter>& parameters);

    platform::Services& services_;
    const kvTagInfo info_;
    DiagnosticList& found_;
    std::map<std::u16string, Handler> handlers_;
    // Of the last tag that was right: the next one is often like it.
    std::u16string lastHandler_;
    std::u16string lastCommand_;
    const std::vector<Parameter>* lastParameters_ = nullptr;
};

}  // namespace velmor
