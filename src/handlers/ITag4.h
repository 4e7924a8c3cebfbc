#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "platform/Services.h"

namespace velmor {

// Below HKEY_LOCAL_MACHINE.
inline constexpr std::u16string_view handlersKey = u"SOFTWARE\\Korvane\\Quillmark\\Handlers";
inline constexpr std::u16string_view subHandlersKey = u"SOFTWARE\\Korvane\\Quillmark\\SubHandlers";

// The handler that is not registered: its commands are built in.
inline constexpr std::u16string_view builtInHandler = u"TAG";
// The handler that repeats a template. It is built in, too, but a registered one takes its place.
inline constexpr std::u16string_view rowsHandler = u"ROWS";

// Where a tag's handler is registered. "NAME" is under Handlers, "GROUP-NAME" (the first "-"
// separates) under the group's key of SubHandlers.
struct HandlerAddress {
    std::u16string name;
    std::u16string group;  // "GROUP\", or empty

    // From the handler part of a tag; upper-cases it.
    static HandlerAddress parse(std::u16string_view psHandler);

    // The registered class name; "" when absent, and always for the built-in handler's name.
    std::u16string className(const platform::Registry& registry) const;
};

// The contract with a handler: an automation class that is always called by member name, after
// asking it for its interface level. One object for each tag that it answers.
//
//     level       GetTagValue   catalogue members          ParameterValueList   Dispose
//     0, 1        -             -                          -                    -
//     2           -             without the database       -                    -
//     3           yes           without the database       -                    -
//     4           yes           with the database          yes                  -
//     5 and up    yes           with the database          yes                  once, after GetTagValue
//
// Calls raise the handler's errors, and 13 when its answer does not convert.
class ITag4 {
public:
    explicit ITag4(automation::ObjectRef handler) : handler_(std::move(handler)) {}

    // Read on each call; the members below read it before they call.
    std::int32_t Interface() const;

    static bool answersTags(std::int32_t level) noexcept { return level > 2; }

    std::u16string GetTagValue(const automation::ObjectRef& tag) const;
    void Dispose() const;  // only when the level says so

    // The answer of a catalogue member (CommandList, ParameterList, SyntaxString, CommandDescription,
    // ParameterValueList); "" where the level says that it is not called.
    std::u16string catalogue(std::u16string_view member, std::initializer_list<std::u16string_view> texts,
                             std::u16string_view psHandler, const automation::ObjectRef& database) const;

private:
    automation::ObjectRef handler_;
};

}  // namespace velmor
