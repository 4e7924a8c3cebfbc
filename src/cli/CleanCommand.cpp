#include "cli/Commands.h"

#include <sstream>
#include <utility>
#include <vector>

#include "cli/Cleaning.h"
#include "cli/Documents.h"
#include "cli/MergeReportFile.h"
#include "cli/Streams.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

class CleanRun {
public:
    CleanRun(platform::Services& services, const CleanCommandOptions& options)
        : services_(services), options_(options), joins_(options.inputs.size() > 1) {}

    ExitCode run() {
        std::u16string text = joins_ ? join() : read(options_.inputs.front());
        if (Module1::isCleanable(text)) {
            clean(text, options_.inputs, joins_ || options_.merge);
        } else if (!holdsTag_) {
            tell(inputName(options_.inputs.front()) + " is not RTF of version 1; it is not changed");
        }
        if (!options_.report.empty()) {
            writeAll(services_.files, options_.report, jsonText({{"version", 1}, {"runs", std::move(runs_)}}) + "\n");
        }
        writeAll(services_.files, options_.output, encodeResult(text, TextEncoding::ansi));
        return reported_ ? exitReported : exitDone;
    }

private:
    std::u16string read(const std::string& input) {
        std::u16string text = fromAnsi(readAll(services_.files, input));
        requireDocument(text, joins_ || !options_.exact, inputName(input));
        reportTag(text, input);
        return text;
    }

    // Each document is cleaned by itself first, so that its markers for headers and footers have their effect.
    std::u16string join() {
        const auto& inputs = options_.inputs;
        std::vector<std::u16string> texts;
        for (const std::string& input : inputs) texts.push_back(read(input));
        for (std::size_t i = 0; i < texts.size() && !holdsTag_; ++i) clean(texts[i], {inputs[i]}, false);
        std::vector<std::string> names;
        for (const std::string& input : inputs) names.push_back(inputName(input));
        return joinDocuments(std::move(texts), names, [this](const std::string& name, std::size_t lost) {
            tell(name + ": " + std::to_string(lost) + (lost == 1 ? " character" : " characters") +
                 " outside the document left out");
        });
    }

    void clean(std::u16string& text, const std::vector<std::string>& inputs, bool mergeMode) {
        MergeReport merged;
        const bool isReported = !options_.report.empty();
        cli::clean(services_, text, {options_.exact, options_.styles, mergeMode}, isReported ? &merged : nullptr);
        if (isReported) runs_.push_back(jsonOf(merged, inputs));
        if (mergeMode) reportPageBreaks(text);
    }

    void reportTag(std::u16string_view text, const std::string& input) {
        const std::size_t position = positionOfTag(text);
        if (position == 0) return;
        holdsTag_ = true;
        tell(inputName(input) + " still contains a tag (position " + std::to_string(position) + "); " +
             (joins_ ? "the documents are joined, but not cleaned" : "it is not changed"));
    }

    void reportPageBreaks(std::u16string_view text) {
        constexpr std::u16string_view marker = Module1::mergePageBreakMarker;
        std::size_t count = 0;
        for (std::size_t at = 0; (at = findText(text, marker, at, Comparison::binary)) != text.npos; ++at) ++count;
        if (count > 0) tell("page breaks between joined documents that could not be made: " + std::to_string(count));
    }

    void tell(const std::string& message) {
        report(message);
        reported_ = true;
    }

    platform::Services& services_;
    const CleanCommandOptions& options_;
    const bool joins_;
    Json runs_ = Json::array();  // of the report
    bool holdsTag_ = false;
    bool reported_ = false;
};

// A name on each line. An empty line is none.
std::vector<std::string> namesIn(const platform::Files& files, const std::string& list) {
    std::istringstream lines(toUtf8(decodeText(readAll(files, list), EncodingChoice::utf8, inputName(list))));
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (!line.empty()) names.push_back(line);
    }
    return names;
}

}  // namespace

ExitCode runClean(platform::Services& services, const CleanCommandOptions& options) {
    CleanCommandOptions all = options;
    if (!options.inputsFrom.empty()) {
        const auto more = namesIn(services.files, options.inputsFrom);
        all.inputs.insert(all.inputs.end(), more.begin(), more.end());
    }
    if (all.inputs.empty()) throw Failure(exitUsage, "no file to clean (velmor clean --help says more)");
    return CleanRun(services, all).run();
}

}  // namespace velmor::cli
