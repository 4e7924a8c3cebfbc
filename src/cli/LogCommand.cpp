#include "cli/Commands.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "common/TextFile.h"
#include "text/Characters.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

struct TimingEntry {
    std::u16string stage;    // EVTAG, TAGCOL, CLNRTF or GENRES
    std::u16string handler;  // "" where the line names none
    std::int64_t calls = 0;
    std::int64_t total = 0;  // milliseconds
    std::int64_t slowest = 0;
};

struct TimingSummary {
    std::vector<TimingEntry> entries;  // the longest total first
    std::size_t unread = 0;            // lines that are not log lines
};

struct Line {
    std::u16string_view stage, handler;
    std::int64_t milliseconds = 0;
};

constexpr std::u16string_view stages[] = {u"EVTAG ", u"TAGCOL", u"CLNRTF", u"GENRES"};
constexpr std::u16string_view dateForm = u"dd/dd/dddd dd:dd:dd ";  // each d a digit
constexpr std::size_t stageWidth = 6;

bool startsLike(std::u16string_view text, std::u16string_view pattern) noexcept {
    if (text.size() < pattern.size()) return false;
    const auto fits = [](char16_t mark, char16_t unit) { return mark == u'd' ? isDigit(unit) : mark == unit; };
    return std::equal(pattern.begin(), pattern.end(), text.begin(), fits);
}

// Reads "0000.000", possibly with more leading digits, and removes it and the blank that follows.
std::optional<std::int64_t> takeMilliseconds(std::u16string_view& text) noexcept {
    constexpr std::size_t mostDigits = 8;  // three years: no log is long enough for their sum to overflow
    const std::size_t point = text.substr(0, mostDigits + 1).find(u'.');
    if (point == text.npos || point < 4 || !startsLike(text.substr(point), u".ddd ")) return {};
    std::int64_t number = 0;
    for (std::size_t i = 0; i < point + 4; ++i) {
        if (i == point) continue;
        if (!isDigit(text[i])) return {};
        number = number * 10 + (text[i] - u'0');
    }
    text.remove_prefix(point + 5);
    return number;
}

// What follows the machine's name, which may hold blanks: a stage and a time.
std::optional<Line> parseStage(std::u16string_view text) noexcept {
    Line line;
    line.stage = text.substr(0, stageWidth);
    if (std::find(std::begin(stages), std::end(stages), line.stage) == std::end(stages)) return {};
    text.remove_prefix(stageWidth);
    if (!text.starts_with(u' ')) return {};
    text.remove_prefix(1);
    const auto milliseconds = takeMilliseconds(text);
    if (!milliseconds) return {};
    line.milliseconds = *milliseconds;
    if (line.stage == stages[0]) {
        line.stage.remove_suffix(1);
        line.handler = text;
    } else if (line.stage == stages[1]) {
        line.handler = text.substr(0, text.rfind(u' '));  // before the number of markers
    }
    return line;
}

std::optional<Line> parseLine(std::u16string_view text) noexcept {
    if (!startsLike(text, dateForm)) return {};
    for (std::size_t blank = dateForm.size() - 1; blank != text.npos; blank = text.find(u' ', blank + 1)) {
        if (const auto line = parseStage(text.substr(blank + 1))) return line;
    }
    return {};
}

// Reads the lines that core/TimingLog.h describes, also where a copy has lost the carriage returns. Linear.
TimingSummary summarize(std::u16string_view log) {
    TimingSummary summary;
    std::unordered_map<std::u16string, std::size_t> places;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find(u'\n'), log.size() - 1);
        const std::size_t length = end - (end > 0 && log[end - 1] == u'\r' ? 1 : 0);
        const auto line = log[end] == u'\n' ? parseLine(log.substr(0, length)) : std::nullopt;
        log.remove_prefix(end + 1);
        if (!line) {
            ++summary.unread;
            continue;
        }
        std::u16string key(line->stage);
        key.append(u" ").append(line->handler);
        const auto place = places.try_emplace(std::move(key), summary.entries.size());
        if (place.second) summary.entries.push_back({std::u16string(line->stage), std::u16string(line->handler)});
        TimingEntry& entry = summary.entries[place.first->second];
        ++entry.calls;
        entry.total += line->milliseconds;
        entry.slowest = std::max(entry.slowest, line->milliseconds);
    }
    std::stable_sort(summary.entries.begin(), summary.entries.end(),
                     [](const TimingEntry& left, const TimingEntry& right) { return left.total > right.total; });
    return summary;
}

constexpr std::size_t longestHandler = 40;

// In thousandths of a second, as in the log.
std::string secondsText(std::int64_t milliseconds) {
    return std::to_string(milliseconds / 1000) + "." + std::to_string(1000 + milliseconds % 1000).substr(1);
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
        width = std::max(width, onOneLine(entry.handler, longestHandler).size());
    }
    std::string text = toUtf8(u"STAGE   " + padded(u"HANDLER", width)) + rightAligned("CALLS") + rightAligned("TOTAL") +
                       rightAligned("MEAN") + rightAligned("SLOWEST") + "\n";
    for (const TimingEntry& entry : summary.entries) {
        text += toUtf8(padded(entry.stage, 8) + padded(onOneLine(entry.handler, longestHandler), width));
        text += rightAligned(std::to_string(entry.calls)) + rightAligned(secondsText(entry.total)) +
                rightAligned(secondsText(mean(entry))) + rightAligned(secondsText(entry.slowest)) + "\n";
    }
    return text;
}

void printJson(const TimingSummary& summary) {
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
    list.end(",\n\"unread\": " + std::to_string(summary.unread));
}

}  // namespace

ExitCode runLog(platform::Services& services, const LogOptions& options) {
    const TimingSummary summary = summarize(decodeTextFile(readAll(services.files, options.input)));
    if (options.json) {
        printJson(summary);
    } else {
        writeAll(services.files, "-", summaryText(summary));
    }
    if (summary.unread == 0) return exitDone;
    report(inputName(options.input) + ": " + std::to_string(summary.unread) +
           (summary.unread == 1 ? " line is not a complete line" : " lines are not complete lines") +
           " of a timing log");
    return exitReported;
}

}  // namespace velmor::cli
