#pragma once

#include <optional>
#include <string>

#include "cli/Documents.h"

namespace velmor::cli {

// The encoding of text whose encoding nothing else decides, such as the results in an ASCII template.
// Windows: the ANSI code page. Elsewhere: UTF-8 in a UTF-8 or ASCII locale (C, POSIX), else the ANSI
// code page.
TextEncoding localeEncoding();

// A command-line argument (in the locale's encoding; on Windows in UTF-8, as main makes it) in UTF-8.
// Nothing when it is not valid.
std::optional<std::string> argumentText(const std::string& argument);

}  // namespace velmor::cli
