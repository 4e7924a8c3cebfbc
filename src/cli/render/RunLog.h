#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/render/Letter.h"

namespace velmor::cli {

// Whether progress is shown: a bar on a terminal, a line a second, or not at all.
enum class ProgressForm { none, bar, lines };

// Counts what became of the records, says what went wrong, and shows the progress, all on standard error. For any
// number of threads.
//
// A record without a letter is one line. An error of a letter that was made is one line, however many letters have it;
// the end says how many. No more than 1,000 lines are written.
class RunLog {
public:
    struct Counts {
        std::uint64_t made = 0;
        std::uint64_t failed = 0;
        std::uint64_t there = 0;     // made before
        std::uint64_t remarked = 0;  // of those that were made
    };
    struct Failed {
        std::uint64_t number;
        std::uint64_t line;
        std::string reason;
    };
    static constexpr std::size_t mostFailures = 10'000;  // that are kept

    // `data` is the name of the data for messages.
    RunLog(std::string data, ProgressForm progress);

    void add(const Letter& letter);
    // `done` is the part of the data that was read, from 0 to 1; negative if nobody knows.
    void showProgress(double done);
    // Removes the bar, and says what the lines left out.
    void finish();

    Counts counts() const;
    // In the order of the data.
    std::vector<Failed> failures() const;
    double seconds() const;

private:
    void say(const Letter& letter, const std::string& what);
    void clearBar();
    void show(const std::string& text, double done);

    const std::string data_;
    const ProgressForm progress_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    mutable std::mutex mutex_;
    Counts counts_;
    std::vector<Failed> failures_;
    std::unordered_map<std::string, std::uint64_t> remarks_;  // letters after the first that have it too
    std::size_t lines_ = 0;
    std::uint64_t unsaid_ = 0;
    double nextLine_ = 1;  // seconds
    bool hasBar_ = false;
};

}  // namespace velmor::cli
