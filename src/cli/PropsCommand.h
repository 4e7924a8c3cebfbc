#pragma once

#include "cli/ExitCode.h"
#include "cli/PropertyFile.h"
#include "platform/Services.h"

namespace velmor::cli {

struct PropsOptions {
    PropertyFile file;
    bool json = false;
};

// velmor props: lists a property file on standard output.
ExitCode runProps(platform::Services& services, const PropsOptions& options);

}  // namespace velmor::cli
