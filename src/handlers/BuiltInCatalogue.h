#pragma once

#include <string_view>

namespace velmor {

// What the catalogue says of the built-in handler. The commands that serve the system itself are
// left out on purpose: nobody writes them into a template by hand.
struct BuiltInCatalogue {
    static constexpr std::u16string_view handler = u"TAG";
    static constexpr std::u16string_view commandList = u"SETPROPERTY:INCLUDE:SETPATH:PROPERTY:";

    // By upper-case command name; "" for any other.
    static std::u16string_view parameterList(std::u16string_view psCommand) noexcept;
    static std::u16string_view syntax(std::u16string_view psCommand) noexcept;
};

}  // namespace velmor
