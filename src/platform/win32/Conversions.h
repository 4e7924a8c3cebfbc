#pragma once

namespace velmor::platform {

// From then on the conversions of automation/Convert.h are the platform's, in the user's locale, and
// those of text/Encoding.h go by its ANSI code page. Called once at start by every Windows program
// and by the component.
void installConversions() noexcept;

}  // namespace velmor::platform
