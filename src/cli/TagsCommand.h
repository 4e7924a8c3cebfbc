#pragma once

#include <string>

#include "cli/Documents.h"
#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct TagsOptions {
    std::string input;  // empty or "-": standard input
    EncodingChoice encoding = EncodingChoice::automatic;
    bool json = false;
};

// velmor tags: lists the tags of a template on standard output without evaluating them, and reports
// opening markers that are never closed.
ExitCode runTags(platform::Services& services, const TagsOptions& options);

}  // namespace velmor::cli
