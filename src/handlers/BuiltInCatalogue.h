#pragma once

#include <string_view>

namespace velmor {

// The catalogue's description of the built-in handler. Commands that serve the system itself are left
// out, as nobody writes them into a template.
struct BuiltInCatalogue {
    static constexpr std::u16string_view handler = u"TAG";
    static constexpr std::u16string_view commandList = u"SETPROPERTY:INCLUDE:SETPATH:PROPERTY:";

    // By upper-case command name; "" for any other.
    static std::u16string_view parameterList(std::u16string_view psCommand) noexcept;
    static std::u16string_view syntax(std::u16string_view psCommand) noexcept;
};

}  // namespace velmor
