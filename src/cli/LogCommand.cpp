#include "cli/LogCommand.h"

#include <algorithm>

#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/TimingSummary.h"
#include "common/TextFile.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::size_t kLongestHandler = 40;

// In thousandths of a second, as in the log.
std::string secondsText(std::int64_t milliseconds) {
    const std::string digits = std::to_string(milliseconds);
    const std::string filled = digits.size() < 4 ? std::string(4 - digits.size(), '0') + digits : digits;
    return filled.substr(0, filled.size() - 3) + "." + filled.substr(filled.size() - 3);
}

std::int64_t mean(const TimingEntry& entry) {
    return (entry.total + entry.calls / 2) / entry.calls;
}

std::string rightAligned(const std::string& text) {
    constexpr std::size_t width = 11;
    return std::string(text.size() < width ? width - text.size() : 1, ' ') + text;
}

std::string summaryText(const TimingSummary& summary) {
    std::size_t width = 7;
    for (const TimingEntry& entry : summary.entries) {
        width = std::max(width, onOneLine(entry.handler, kLongestHandler).size());
    }
    std::string text = toUtf8(u"STAGE   " + padded(u"HANDLER", width)) + rightAligned("CALLS") + rightAligned("TOTAL") +
                       rightAligned("MEAN") + rightAligned("SLOWEST") + "\n";
    for (const TimingEntry& entry : summary.entries) {
        text += toUtf8(padded(entry.stage, 8) + padded(onOneLine(entry.handler, kLongestHandler), width));
        text += rightAligned(std::to_string(entry.calls)) + rightAligned(secondsText(entry.total)) +
                rightAligned(secondsText(mean(entry))) + rightAligned(secondsText(entry.slowest)) + "\n";
    }
    return text;
}

std::string summaryJson(const TimingSummary& summary) {
    constexpr double thousand = 1000;
    JsonList list("entries");
    for (const TimingEntry& entry : summary.entries) {
        list.add({{"stage", toUtf8(entry.stage)},
                  {"handler", toUtf8(entry.handler)},
                  {"calls", entry.calls},
                  {"total", static_cast<double>(entry.total) / thousand},
                  {"mean", static_cast<double>(entry.total) / thousand / static_cast<double>(entry.calls)},
                  {"slowest", static_cast<double>(entry.slowest) / thousand}});
    }
    return std::move(list).text(",\n\"unread\": " + std::to_string(summary.unread));
}

}  // namespace

ExitCode runLog(platform::Services& services, const LogOptions& options) {
    const TimingSummary summary = summarize(decodeTextFile(readAll(services.files, options.input)));
    writeAll(services.files, "-", options.json ? summaryJson(summary) : summaryText(summary));
    if (summary.unread == 0) return exitDone;
    report(inputName(options.input) + ": " + std::to_string(summary.unread) +
           (summary.unread == 1 ? " line is not a complete line" : " lines are not complete lines") +
           " of a timing log");
    return exitReported;
}

}  // namespace velmor::cli
