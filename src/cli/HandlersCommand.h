#pragma once

#include <string>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct HandlersOptions {
    std::string name;  // only this handler; empty: every one
    bool all = false;  // hidden ones as well
    bool json = false;
};

// velmor handlers: lists the registered handlers, those of groups included, and their commands. A
// handler that cannot be created is listed and reported. Throws Failure (exitFile)
// when no handler has the given name.
ExitCode runHandlers(platform::Services& services, const HandlersOptions& options);

}  // namespace velmor::cli
