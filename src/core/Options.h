#pragma once

#include <string_view>

#include "platform/Services.h"

namespace velmor {

class Collection;

// "kvTag.Missing" and the like: properties that are options of evaluation, not data.
bool isOption(std::u16string_view psName) noexcept;
inline constexpr std::u16string_view tolerantProperty = u"kvTag.RTF Tolerant";

// Whether RTF is cleaned and included tolerantly: the property of that name; if it is absent, the
// machine's option "RTF Tolerant"; false by default. Never raises.
bool isTolerant(const platform::Services& services, const Collection& properties) noexcept;

}  // namespace velmor
