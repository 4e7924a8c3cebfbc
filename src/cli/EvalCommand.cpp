#include <memory>
#include <optional>

#include "cli/Commands.h"
#include "cli/ErrorReport.h"
#include "cli/Streams.h"
#include "cli/TemplatePlaces.h"
#include "cli/TraceCollector.h"
#include "cli/TraceFile.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"

namespace velmor::cli {

ExitCode runEval(platform::Services& services, const EvalOptions& options) {
    TemplateInput input(services, options);
    Document& document = input.document();
    const std::shared_ptr<kvTag> tag = input.makeTag();
    const TemplatePlaces places(document.text);
    ErrorReport errors(inputName(options.input), places);
    std::optional<TraceCollector> trace;
    if (!options.trace.empty()) trace.emplace();
    tag->Value(std::move(document.text));
    const std::u16string result = tag->Result();
    const bool reported = errors.print();
    if (tag->hasFailed()) throw Failure(exitFile, "nothing was written: the evaluation failed");
    std::vector<PlaceShift> shifts;
    const std::string output = encodeResult(result, document.encoding, trace ? &shifts : nullptr);
    if (trace) {
        writeAll(services.files, options.trace,
                 traceFile(*trace, {options.input, places, output, document.encoding, shifts}));
    }
    writeAll(services.files, options.output, output);
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace velmor::cli
