#include "cli/Commands.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/Documents.h"
#include "cli/JsonText.h"
#include "cli/Output.h"
#include "cli/SpoolFile.h"
#include "cli/Streams.h"
#include "core/Markup.h"
#include "core/kvTag.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/JoinDocuments.h"
#include "rtf/clean/JoinedCleaning.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// Counts the markers of merge page breaks in a text that comes in pieces.
class MarkerCount {
public:
    void add(std::u16string_view piece) {
        constexpr std::u16string_view marker = Module1::mergePageBreakMarker;
        const std::u16string text = end_ + std::u16string(piece);
        for (std::size_t at = 0; (at = findText(text, marker, at, Comparison::binary)) != text.npos; ++at) ++count_;
        end_ = text.substr(text.size() - std::min(text.size(), marker.size() - 1));
    }
    std::size_t count() const noexcept { return count_; }

private:
    std::u16string end_;  // too short for a marker
    std::size_t count_ = 0;
};

constexpr const char* outcomes[] = {"kept", "shared", "added", "renamed", "direct", "replaced"};

Json entriesJson(const std::vector<MergedEntry>& entries) {
    Json list = Json::array();
    for (const MergedEntry& entry : entries) {
        Json json = {{"outcome", outcomes[static_cast<std::size_t>(entry.outcome)]}};
        if (!entry.name.empty()) json["name"] = toUtf8(entry.name);
        if (entry.newName != entry.name) json["newName"] = toUtf8(entry.newName);
        json["number"] = toUtf8(entry.number);
        if (entry.newNumber != entry.number) json["newNumber"] = toUtf8(entry.newNumber);
        list.push_back(std::move(json));
    }
    return list;
}

// What one run of cleaning merged. `inputs`: the files that were joined, or the one that was cleaned; documents within
// them have no name.
Json mergeJson(const MergeReport& report, const std::vector<std::string>& inputs) {
    const bool areInputs = report.documents.size() == inputs.size();
    Json documents = Json::array();
    for (std::size_t index = 0; index < report.documents.size(); ++index) {
        const MergeReport::Document& document = report.documents[index];
        Json json = {{"input", areInputs || index == 0 ? Json(inputs[index]) : Json(nullptr)},
                     {"fonts", entriesJson(document.fonts)},
                     {"colours", entriesJson(document.colours)},
                     {"styles", entriesJson(document.styles)},
                     {"lists", entriesJson(document.lists)},
                     {"listOverrides", entriesJson(document.listOverrides)}};
        documents.push_back(std::move(json));
    }
    return {{"inputs", inputs}, {"documents", std::move(documents)}};
}

class CleanRun {
public:
    CleanRun(platform::Services& services, const CleanCommandOptions& options)
        : services_(services), options_(options), joins_(options.inputs.size() > 1) {}

    ExitCode run() {
        joins_ ? join() : cleanOne();
        return reported_ ? exitReported : exitDone;
    }

private:
    std::u16string read(const std::string& input) {
        std::u16string text = fromAnsi(readAll(services_.files, input));
        requireDocument(text, joins_ || !options_.exact, inputName(input));
        reportTag(text, input);
        return text;
    }

    void cleanOne() {
        const std::string& input = options_.inputs.front();
        std::u16string text = read(input);
        const bool isCleanable = Module1::isCleanable(text);
        if (isCleanable) clean(text, input, options_.merge);
        if (!isCleanable && !holdsTag_) tellNotRtf();
        if (isCleanable && options_.merge) {
            MarkerCount breaks;
            breaks.add(text);
            reportPageBreaks(breaks);
        }
        writeReport();
        writeAll(services_.files, options_.output, encodeResult(text, TextEncoding::ansi));
    }

    // All documents are read before one is cleaned: if one holds a tag, none is. Each is cleaned by itself first, so
    // that its markers for headers and footers have their effect.
    void join() {
        SpoolFile asRead(services_), letters(services_), cleaned(services_);
        SpooledTexts texts(asRead);
        bool isRtf = false;
        for (const std::string& input : options_.inputs) {
            const std::u16string text = read(input);
            isRtf = isRtf || Module1::isCleanable(text);
            texts.add(text);
        }
        MergeReport merged;
        const CleanOptions options = cleaning(true, merged);
        JoinedCleaning joining(options, services_, letters, cleaned);
        texts.forEach([&, input = options_.inputs.begin()](std::u16string text) mutable {
            if (!holdsTag_) clean(text, *input, false);
            const std::string name = inputName(*input++);
            const std::size_t lost = joining.add({std::move(text), options.tolerant, name});
            if (lost > 0) tellLost(name, lost);
            return true;
        });
        Output output(services_.files, options_.output);
        MarkerCount breaks;
        joining.finish([&](std::u16string_view piece) {
            breaks.add(piece);
            output.write(toAnsi(piece));  // the documents were in this code page
        });
        if (!holdsTag_ && isRtf) {
            if (options.report != nullptr) runs_.push_back(mergeJson(merged, options_.inputs));
            reportPageBreaks(breaks);
        } else if (!holdsTag_) {
            tellNotRtf();
        }
        writeReport();
        output.finish();
    }

    void clean(std::u16string& text, const std::string& input, bool mergeMode) {
        MergeReport merged;
        const CleanOptions options = cleaning(mergeMode, merged);
        cleanAsTag(services_, text, options);
        if (options.report != nullptr) runs_.push_back(mergeJson(merged, {input}));
    }

    CleanOptions cleaning(bool mergeMode, MergeReport& merged) const {
        return {.mergeMode = mergeMode,
                .tolerant = !options_.exact,
                .styles = options_.styles,
                .report = options_.report.empty() ? nullptr : &merged};
    }

    void writeReport() {
        if (options_.report.empty()) return;
        writeAll(services_.files, options_.report, jsonText({{"version", 1}, {"runs", std::move(runs_)}}) + "\n");
    }

    void reportTag(std::u16string_view text, const std::string& input) {
        const std::size_t place = findOpeningMarker(text, 0);
        if (place == text.npos) return;
        holdsTag_ = true;
        tell(inputName(input) + " still contains a tag (position " + std::to_string(place + 1) + "); " +
             (joins_ ? "the documents are joined, but not cleaned" : "it is not changed"));
    }

    void reportPageBreaks(const MarkerCount& breaks) {
        if (breaks.count() == 0) return;
        tell("page breaks between joined documents that could not be made: " + std::to_string(breaks.count()));
    }

    void tellNotRtf() { tell(inputName(options_.inputs.front()) + " is not RTF of version 1; it is not changed"); }

    void tellLost(const std::string& name, std::size_t count) {
        tell(name + ": " + std::to_string(count) + (count == 1 ? " character" : " characters") +
             " outside the document left out");
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
