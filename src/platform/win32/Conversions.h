#pragma once

namespace velmor::platform {

// From then on the conversions of automation/Convert.h are the platform's, in the user's locale.
// Called once at start by every Windows program and by the component.
void installConversions() noexcept;

}  // namespace velmor::platform
