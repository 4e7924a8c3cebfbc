#pragma once

#include <string>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct HandlersOptions {
    std::string name;  // only this handler; empty: every one
    bool all = false;  // hidden ones, too
    bool json = false;
};

// velmor handlers: lists the registered handlers, those of the groups included, and what each says
// of its commands. A handler that cannot be created is listed and reported. Throws Failure
// (exitFile) when there is none of the name asked for.
ExitCode runHandlers(platform::Services& services, const HandlersOptions& options);

}  // namespace velmor::cli
