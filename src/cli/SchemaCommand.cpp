#include "check/TemplateSchema.h"
#include "cli/Commands.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {

ExitCode runSchema(platform::Services& services, const SchemaOptions& options) {
    TemplateInput input(services, options);
    const std::u16string title = fromUtf8(options.input.empty() ? "-" : options.input);
    TemplateCheck check = input.makeCheck(true);
    const CheckResult result = check.run(title, std::move(input.document().text));
    bool isComplete = true;
    for (const Diagnostic& each : result.diagnostics) {
        if (each.code != DiagnosticCode::missingInclude && each.code != DiagnosticCode::outsideRoot) continue;
        report(toUtf8(lineOf(each)));
        isComplete = false;
    }
    print(toUtf8(options.sample ? sampleText(check.properties()) : schemaText(check.properties(), title)));
    finishPrinting();
    return isComplete ? exitDone : exitReported;
}

}  // namespace velmor::cli
