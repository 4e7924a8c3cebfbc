#pragma once

namespace velmor::platform {

// From then on text/Encoding.h converts by that code page of the system, of one or several bytes a character; 0
// is its ANSI code page. No change if the system lacks it, or without memory.
void installCodePage(unsigned codePage = 0) noexcept;

}  // namespace velmor::platform
