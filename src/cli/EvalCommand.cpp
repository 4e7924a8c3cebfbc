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

// The services of an evaluation, and its tape if it is recorded or replayed.
class EvalServices {
public:
    EvalServices(platform::Services& real, std::unique_ptr<Tape> tape) : real_(real), tape_(std::move(tape)) {
        if (!tape_) return;
        taped_.emplace(real, *tape_);
        tape_->inside(&taped_->objects());
    }

    platform::Services& services() { return taped_ ? taped_->services() : real_; }
    // Throws Failure for any trouble with the record.
    void finish(std::string_view output, const ErrorReport& errors) {
        if (!tape_) return;
        tape_->finish(checksumOf(output));
        requireNoTrouble(errors);
    }
    void requireNoTrouble(const ErrorReport& errors) const {
        if (!tape_ || !tape_->trouble()) return;
        const Tape::Trouble& trouble = *tape_->trouble();
        std::string message = errors.textOf(errors.placeOf({trouble.tag, trouble.position, trouble.tagText}));
        message += ": ";
        if (!trouble.tagText.empty()) message += shown(trouble.tagText) + ": ";
        throw Failure(exitFile, message + trouble.message + "; nothing was written");
    }
    // The record that was made; null if none was.
    const std::string* record() const { return tape_ ? tape_->record() : nullptr; }

private:
    platform::Services& real_;
    const std::unique_ptr<Tape> tape_;
    std::optional<TapedServices> taped_;
};

std::unique_ptr<Tape> recorderOf(const EvalOptions& options, const TemplateFiles& files, TextEncoding encoding) {
    if (options.record.empty()) return nullptr;
    const int year = automation::portable::currentYear();
    automation::portable::assumeYear(year);
    return std::make_unique<Recorder>(recordHead({options, files, encoding, year}));
}

ExitCode evaluate(platform::Services& services, const EvalOptions& options, const RunRecord* replayed) {
    const TemplateOptions& used = replayed ? replayed->input().options : options;
    TemplateFiles files = replayed ? replayed->input().files : TemplateFiles::read(services.files, options);
    TemplateInput input(services, used, options.record.empty() ? std::move(files) : files);
    Document& document = input.document();
    if (replayed) document.encoding = replayed->input().encoding;
    // A record keeps the files, and then they were not moved.  NOLINTNEXTLINE(bugprone-use-after-move)
    EvalServices source(input.services(), replayed ? replayed->tape() : recorderOf(options, files, document.encoding));
    const std::shared_ptr<kvTag> tag = input.makeTag(source.services());
    const TemplatePlaces places(document.text);
    ErrorReport errors(inputName(used.input), places);
    std::optional<TraceCollector> trace;
    if (!options.trace.empty()) trace.emplace();
    tag->Value(std::move(document.text));
    const std::u16string result = tag->Result();
    source.requireNoTrouble(errors);
    const bool reported = errors.print();
    if (tag->hasFailed()) throw Failure(exitFile, "nothing was written: the evaluation failed");
    PlaceShifts shifts;
    const std::string output = encodeResult(result, document.encoding, trace ? &shifts : nullptr);
    source.finish(output, errors);
    if (trace) {
        Output file(services.files, options.trace);
        writeTrace(file, *trace, {used.input, places, output, document.encoding, shifts});
        file.finish();
    }
    if (source.record()) writeAll(services.files, options.record, *source.record());
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
