#include <memory>

#include "cli/Commands.h"
#include "cli/ErrorReport.h"
#include "cli/Streams.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"

namespace velmor::cli {

ExitCode runEval(platform::Services& services, const EvalOptions& options) {
    TemplateInput input(services, options);
    Document& document = input.document();
    const auto tag = std::make_shared<kvTag>(input.services());
    input.addProperties(*tag->Properties().own());

    ErrorReport errors(inputName(options.input), document.text);
    tag->Value(std::move(document.text));
    const std::u16string result = tag->Result();
    const bool reported = errors.print();
    if (tag->hasFailed()) throw Failure(exitFile, "nothing was written: the evaluation failed");
    writeAll(services.files, options.output, encodeResult(result, document.encoding));
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace velmor::cli
