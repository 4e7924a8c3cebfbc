#pragma once

namespace velmor::platform {

// From then on text/Encoding.h converts by the system's ANSI code page. A double-byte code page is
// left alone (1252 stays): a byte of a template is a character, and positions count on it.
void installAnsiCodePage() noexcept;

}  // namespace velmor::platform
