#pragma once

namespace velmor::platform {

// Installs the platform's conversions in the user's locale for automation/Convert.h, and its ANSI code page for
// text/Encoding.h. Every Windows program calls it once at start, and every DLL when it is loaded. Unsafe while
// another thread converts.
void installConversions() noexcept;

}  // namespace velmor::platform
