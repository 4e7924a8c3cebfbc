#pragma once

namespace velmor::platform {

// From then on the conversions of automation/Convert.h are the platform's, in the user's locale, and
// those of text/Encoding.h go by its ANSI code page. Every Windows program calls it once at start, and
// every DLL when it is loaded. It is not safe once another thread converts.
void installConversions() noexcept;

}  // namespace velmor::platform
