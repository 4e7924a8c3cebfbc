#pragma once

namespace velmor {

// The source of every error that is raised here, as hosts read it.
inline constexpr char16_t kErrorSource[] = u"kvVelmor3";

}  // namespace velmor
