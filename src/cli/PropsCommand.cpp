#include "cli/Commands.h"

#include <memory>

#include "cli/PropertyListing.h"
#include "cli/Streams.h"

namespace velmor::cli {

ExitCode runProps(platform::Services& services, const PropsOptions& options) {
    const auto collection = std::make_shared<privProperties>(services);
    readPropertyFile(*collection, services.files, options.file);
    const auto list = options.json ? printPropertyJson : printPropertyTable;
    if (list(services, *collection)) return exitDone;
    report(inputName(options.file.name) + ": more than " + std::to_string(privProperties::maximumNesting) +
           " levels of nesting; the deeper ones are not listed");
    return exitReported;
}

}  // namespace velmor::cli
