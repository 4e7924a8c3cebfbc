#pragma once

#include <optional>
#include <string>

#include "cli/Documents.h"

namespace velmor::cli {

// The encoding for text that comes without any, such as what is put into an ASCII template: the
// ANSI code page on Windows; elsewhere UTF-8 where the locale says so or knows ASCII alone (C, POSIX),
// and the ANSI code page for every other locale.
TextEncoding localeEncoding();

// A command-line argument (in the locale's encoding; on Windows in UTF-8, as main makes it) in UTF-8.
// Nothing when it is not valid.
std::optional<std::string> argumentText(const std::string& argument);

}  // namespace velmor::cli
