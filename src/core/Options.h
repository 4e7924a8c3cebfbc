#pragma once

#include <string_view>

#include "platform/Services.h"

namespace velmor {

class Collection;

// Below HKEY_LOCAL_MACHINE: the settings of a whole machine, all of them strings.
inline constexpr std::u16string_view kOptionsKey = u"SOFTWARE\\Korvane\\Quillmark\\Options";

// Whether RTF is cleaned and included tolerantly: the property "kvTag.RTF Tolerant"; where that is
// absent, the machine's option "RTF Tolerant"; else not. Never raises.
bool isTolerant(const platform::Services& services, const Collection& properties) noexcept;

}  // namespace velmor
