#include <algorithm>
#include <cstdio>
#include <optional>
#include <thread>
#include <utility>

#include "cli/Commands.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/render/CachedFiles.h"
#include "cli/render/Destination.h"
#include "cli/render/Interruption.h"
#include "cli/render/RecordFeed.h"
#include "cli/render/RenderRun.h"
#include "cli/render/RunLog.h"
#include "text/Encoding.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace velmor::cli {
namespace {

bool isTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

ProgressForm progressOf(const RenderOptions& options) {
    if (options.isQuiet) return ProgressForm::none;
    if (isTerminal()) return ProgressForm::bar;
    return options.showsProgress ? ProgressForm::lines : ProgressForm::none;
}

// The data are read as records, not as properties that all share.
TemplateOptions sharedOptions(const RenderOptions& options) {
    TemplateOptions shared = options;
    shared.dataFile.clear();
    if (inputName(shared.input) == inputName(options.dataFile)) {
        throw Failure(exitUsage, "the template and the data cannot be the same input");
    }
    return shared;
}

RecordChoice choiceOf(const RenderOptions& options) {
    RecordChoice choice;
    if (options.parts > 0) {
        if (options.dataFile == "-") throw Failure(exitUsage, "--part needs data that can be read twice, not a pipe");
        choice = partOf(options.dataFile, options.data, options.part, options.parts);
    }
    if (options.limit > 0) choice.limit = options.limit;
    for (const std::string& condition : options.where) {
        const std::size_t equals = condition.find('=');
        choice.where.emplace_back(fromUtf8(condition.substr(0, equals)), fromUtf8(condition.substr(equals + 1)));
    }
    return choice;
}

unsigned threadsOf(const RenderOptions& options) {
    return options.jobs > 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency());
}

class Rendering {
public:
    Rendering(platform::Services& services, const RenderOptions& options)
        : services_(services),
          options_(options),
          shared_(sharedOptions(options)),
          input_(services, shared_),
          plan_(input_, inputName(shared_.input)),
          reader_(openRecords(options.dataFile, options.data)),
          choice_(choiceOf(options)),
          log_(inputName(options.dataFile), progressOf(options)) {
        plan();
    }

    ExitCode run() {
        const std::unique_ptr<Destination> destination = makeDestination();
        CachedFiles files(services_.files);
        RecordFeed feed(*reader_, choice_, services_);
        RenderRun run(
            feed, [&] { return std::make_unique<LetterMaker>(plan_, *reader_, files); }, *destination, log_);
        const unsigned threads = threadsOf(options_);
        try {
            run.run(threads);
        } catch (...) {
            log_.finish();
            throw;
        }
        const bool isInterrupted = Interruption::requested();
        if (!isInterrupted && log_.counts().made > 0) destination->finish();
        log_.finish();
        if (!options_.report.empty()) writeAll(services_.files, options_.report, reportText(threads, isInterrupted));
        return isInterrupted ? tellInterruption() : outcome();
    }

private:
    bool isRtf() const { return plan_.input.document().text.starts_with(u"{\\rtf"); }
    CleanOptions cleaning() const { return {.tolerant = !options_.exact, .styles = options_.styles}; }

    void plan() {
        if (!options_.each.empty()) plan_.names = &names_.emplace(options_.each);
        plan_.leavesThere = options_.continues;
        plan_.joinsRtf = options_.each.empty() && isRtf();
        if (plan_.joinsRtf || (options_.cleans && isRtf())) plan_.cleaning = cleaning();
    }

    std::unique_ptr<Destination> makeDestination() {
        if (plan_.names != nullptr) return std::make_unique<LetterFiles>(services_.files);
        if (plan_.joinsRtf) return joinedRtf(services_, options_.join, cleaning(), threadsOf(options_) > 1);
        const Document& document = plan_.input.document();
        const bool hasMark = document.text.starts_with(u'\uFEFF');
        return joinedText(services_, options_.join, hasMark ? encodeDocument(u"\uFEFF", document.encoding) : "");
    }

    ExitCode outcome() {
        const RunLog::Counts counts = log_.counts();
        bool isReported = counts.failed > 0 || counts.remarked > 0;
        for (const std::string& column : reader_->unusedColumns()) {
            report(inputName(options_.dataFile) + ": not used: " + column);
            isReported = true;
        }
        if (counts.made + counts.there == 0) {
            report("no letter was made" + std::string(counts.failed > 0 ? "" : ": no record was chosen"));
            isReported = true;
        }
        return isReported ? exitReported : exitDone;
    }

    ExitCode tellInterruption() {
        const RunLog::Counts counts = log_.counts();
        if (options_.each.empty()) {
            report(options_.join.empty() || options_.join == "-" ? "interrupted; the output is not complete"
                                                                 : "interrupted; nothing was written");
        } else {
            report("interrupted; " + std::to_string(counts.made + counts.there) +
                   " letters are there. The same command with --continue makes the others");
        }
        return exitInterrupted;
    }

    std::string reportText(unsigned threads, bool isInterrupted) const {
        const RunLog::Counts counts = log_.counts();
        Json failures = Json::array();
        for (const RunLog::Failed& failed : log_.failures()) {
            Json entry = {{"record", failed.number}};
            if (failed.line > 0) entry["line"] = failed.line;
            entry["message"] = shown(fromUtf8(failed.reason));
            failures.push_back(std::move(entry));
        }
        Json json = {{"version", 1},
                     {"template", options_.input},
                     {"data", options_.dataFile},
                     {"each", options_.each},
                     {"join", options_.join},
                     {"threads", threads},
                     {"seconds", log_.seconds()},
                     {"interrupted", isInterrupted},
                     {"made", counts.made},
                     {"remarked", counts.remarked},
                     {"there", counts.there},
                     {"failed", counts.failed}};
        if (options_.parts > 0) {
            json["part"] = {
                {"number", options_.part}, {"of", options_.parts}, {"first", choice_.first}, {"last", choice_.last}};
        }
        json["failures"] = std::move(failures);
        return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    }

    platform::Services& services_;
    const RenderOptions& options_;
    const Interruption interruption_;
    const TemplateOptions shared_;
    TemplateInput input_;
    std::optional<FileNames> names_;
    LetterPlan plan_;
    const std::unique_ptr<RecordReader> reader_;
    const RecordChoice choice_;
    RunLog log_;
};

}  // namespace

ExitCode runRender(platform::Services& services, const RenderOptions& options) {
    return Rendering(services, options).run();
}

}  // namespace velmor::cli
