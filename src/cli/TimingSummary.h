#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::cli {

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

// Reads the lines that core/TimingLog.h describes, also where a copy has lost the carriage returns. Linear.
TimingSummary summarize(std::u16string_view log);

}  // namespace velmor::cli
