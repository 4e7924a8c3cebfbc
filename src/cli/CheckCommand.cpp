#include "check/Annotation.h"
#include "check/OutputCheck.h"
#include "check/TagRepair.h"
#include "cli/Commands.h"
#include "cli/DiagnosticText.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

CheckResult checkTemplate(platform::Services& services, const CheckOptions& options, const std::string& name) {
    TemplateOptions one = options;
    one.input = name;
    TemplateInput input(services, one);
    const std::u16string shownName = fromUtf8(name.empty() ? "-" : name);
    Document& document = input.document();
    if (!options.fixed.empty()) {
        const RepairedTemplate repaired = repairTags(TemplateFile(shownName, document.text, {}));
        document.text = repaired.source;
        writeAll(services.files, options.fixed, encodeResult(document.text, document.encoding));
        report("repaired tags: " + std::to_string(repaired.repaired) +
               ", faulty tags left as they are: " + std::to_string(repaired.left));
    }
    CheckResult result = input.makeCheck().run(shownName, document.text);
    if (!options.annotated.empty()) {
        if (!documentStandsAt(document.text, 0)) {
            throw Failure(exitFile, inputName(name) + " is not an RTF document: only RTF can hold comments");
        }
        const TemplateFile file(shownName, std::move(document.text), {});
        writeAll(services.files, options.annotated,
                 encodeResult(annotated(file, result.diagnostics), document.encoding));
    }
    return result;
}

ExitCode printResults(const std::vector<CheckResult>& results, CheckFormat format) {
    std::vector<Diagnostic> diagnostics;
    std::size_t more = 0;
    for (const CheckResult& result : results) {
        diagnostics.insert(diagnostics.end(), result.diagnostics.begin(), result.diagnostics.end());
        more += result.more;
    }
    printDiagnostics(diagnostics, more, format);
    if (more > 0) report(std::to_string(more) + " more were found");
    return diagnostics.empty() ? exitDone : exitReported;
}

}  // namespace

ExitCode runCheck(platform::Services& services, const CheckOptions& options) {
    if (options.inputs.size() > 1 && !(options.fixed.empty() && options.annotated.empty())) {
        throw Failure(exitUsage, "--fix and --annotate take one template");
    }
    std::vector<CheckResult> results;
    for (const std::string& name : options.inputs.empty() ? std::vector<std::string>{""} : options.inputs) {
        results.push_back(checkTemplate(services, options, name));
    }
    return printResults(results, options.format);
}

ExitCode runVerify(platform::Services& services, const VerifyOptions& options) {
    std::vector<CheckResult> results;
    for (const std::string& name : options.inputs) {
        Document document = decodeTemplate(readAll(services.files, name), EncodingChoice::automatic, inputName(name));
        results.push_back(checkOutput(fromUtf8(name.empty() ? "-" : name), std::move(document.text)));
    }
    return printResults(results, options.format);
}

}  // namespace velmor::cli
