#include <memory>
#include <optional>

#include "automation/Portable.h"
#include "check/TemplatePlaces.h"
#include "cli/Commands.h"
#include "cli/ErrorReport.h"
#include "cli/LineText.h"
#include "cli/RunRecord.h"
#include "cli/Streams.h"
#include "cli/TapedServices.h"
#include "cli/TraceFile.h"
#include "core/TraceCollector.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"

namespace velmor::cli {
namespace {

std::unique_ptr<const RunRecord> recordToReplay(platform::Services& services, const EvalOptions& options) {
    if (options.replay.empty()) return nullptr;
    auto record = std::make_unique<const RunRecord>(inputName(options.replay), readAll(services.files, options.replay));
    record->requireSame(services.files, options);
    return record;
}

// Throws Failure for any trouble with the record.
void requireNoTrouble(const Tape* tape, const ErrorReport& errors) {
    if (!tape || !tape->trouble()) return;
    const Tape::Trouble& trouble = *tape->trouble();
    std::string message = errors.textOf(errors.placeOf({trouble.tag, trouble.position, trouble.tagText}));
    message += ": ";
    if (!trouble.tagText.empty()) message += shown(trouble.tagText) + ": ";
    throw Failure(exitFile, message + trouble.message + "; nothing was written");
}

std::unique_ptr<Tape> recorderOf(const EvalOptions& options, const TemplateFiles& files, TextEncoding encoding) {
    if (options.record.empty()) return nullptr;
    const int year = automation::portable::currentYear();
    automation::portable::assumeYear(year);
    return recordingTape(recordHead({options, files, encoding, year}));
}

ExitCode evaluate(platform::Services& services, const EvalOptions& options, const RunRecord* replayed) {
    const TemplateOptions& used = replayed ? replayed->input().options : options;
    TemplateFiles files = replayed ? replayed->input().files : TemplateFiles::read(services.files, options);
    TemplateInput input(services, used, options.record.empty() ? std::move(files) : files);
    Document& document = input.document();
    if (replayed) document.encoding = replayed->input().encoding;
    // A record keeps the files, and then they were not moved.  NOLINTNEXTLINE(bugprone-use-after-move)
    const auto tape = replayed ? replayed->tape() : recorderOf(options, files, document.encoding);
    const auto taped = tape ? tapedServices(input.services(), *tape) : nullptr;
    const std::shared_ptr<kvTag> tag = input.makeTag(taped ? *taped : input.services());
    const TemplatePlaces places(document.text);
    ErrorReport errors(inputName(used.input), places);
    std::optional<TraceCollector> trace;
    if (!options.trace.empty()) trace.emplace();
    tag->Value(std::move(document.text));
    const std::u16string result = tag->Result();
    requireNoTrouble(tape.get(), errors);
    const bool reported = errors.print();
    if (tag->hasFailed()) throw Failure(exitFile, "nothing was written: the evaluation failed");
    PlaceShifts shifts;
    const std::string output = encodeResult(result, document.encoding, trace ? &shifts : nullptr);
    if (tape) tape->finish(checksumOf(output));
    requireNoTrouble(tape.get(), errors);
    if (trace) {
        Output file(services.files, options.trace);
        writeTrace(file, *trace, {used.input, places, output, document.encoding, shifts});
        file.finish();
    }
    if (tape && tape->record()) writeAll(services.files, options.record, *tape->record());
    writeAll(services.files, options.output, output);
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace

ExitCode runEval(platform::Services& services, const EvalOptions& options) {
    const std::unique_ptr<const RunRecord> replayed = recordToReplay(services, options);
    return evaluate(services, options, replayed.get());
}

}  // namespace velmor::cli
