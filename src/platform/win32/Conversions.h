#pragma once

namespace velmor::platform {

// Installs the platform's conversions in the user's locale for automation/Convert.h, and its ANSI code page for
// text/Encoding.h. Every Windows program calls it once at start, and every DLL when it is loaded. Unsafe while
// another thread converts.
void installConversions() noexcept;

// From then on text/Encoding.h converts by that code page of the system, of one or several bytes a character; 0
// is its ANSI code page. No change if the system lacks it, or without memory. (CodePage.cpp)
void installCodePage(unsigned codePage = 0) noexcept;

}  // namespace velmor::platform
