#include "check/TemplateCheck.h"
#include "check/TemplateSchema.h"
#include "cli/Commands.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {

ExitCode runSchema(platform::Services& services, const SchemaOptions& options) {
    TemplateInput input(services, options);
    const auto given = std::make_shared<privProperties>(input.services());
    input.addProperties(*given);
    const std::u16string title = fromUtf8(options.input.empty() ? "-" : options.input);
    TemplateCheck check(input.services(), given);
    const CheckResult result = check.run(title, std::move(input.document().text));
    bool isComplete = true;
    for (const Diagnostic& each : result.diagnostics) {
        if (each.code != DiagnosticCode::missingInclude) continue;
        report(toUtf8(each.message));
        isComplete = false;
    }
    print(toUtf8(options.sample ? sampleText(check.properties()) : schemaText(check.properties(), title)));
    finishPrinting();
    return isComplete ? exitDone : exitReported;
}

}  // namespace velmor::cli
