#include "cli/render/RunLog.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "cli/Streams.h"

namespace velmor::cli {
namespace {

constexpr std::size_t mostLines = 1000;

std::string durationText(double seconds) {
    const auto whole = static_cast<long long>(std::min(std::ceil(seconds), 1e9));
    std::array<char, 64> text{};
    if (whole < 3600) {
        std::snprintf(text.data(), text.size(), "%02lld:%02lld", whole / 60, whole % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
    }
    return text.data();
}

}  // namespace

RunLog::RunLog(std::string data, ProgressForm progress) : data_(std::move(data)), progress_(progress) {}

void RunLog::add(const Letter& letter) {
    const std::scoped_lock lock(mutex_);
    if (!letter.failure.empty()) {
        ++counts_.failed;
        if (failures_.size() < mostFailures) failures_.push_back({letter.number, letter.line, letter.failure});
        return say(letter, letter.failure);
    }
    ++(letter.isThere ? counts_.there : counts_.made);
    if (!letter.remarks.empty()) ++counts_.remarked;
    for (const std::string& remark : letter.remarks) {
        if (const auto known = remarks_.find(remark); known != remarks_.end()) {
            ++known->second;
            continue;
        }
        if (remarks_.size() < mostLines) remarks_.emplace(remark, 0);
        say(letter, remark);
    }
}

void RunLog::say(const Letter& letter, const std::string& what) {
    if (lines_ == mostLines) {
        ++unsaid_;
        return;
    }
    ++lines_;
    clearBar();
    const std::string line = letter.line > 0 ? ":" + std::to_string(letter.line) : "";
    report(data_ + line + ": record " + std::to_string(letter.number) + ": " + what);
}

void RunLog::showProgress(double done) {
    const std::scoped_lock lock(mutex_);
    const double seconds = this->seconds();
    if (progress_ == ProgressForm::none || (progress_ == ProgressForm::lines && seconds < nextLine_)) return;
    nextLine_ = std::floor(seconds) + 1;
    const auto records = static_cast<double>(counts_.made + counts_.failed + counts_.there);
    std::string text = std::to_string(counts_.made + counts_.there) + " done, " + std::to_string(counts_.failed) +
                       " failed, " + std::to_string(static_cast<long long>(records / std::max(seconds, 0.001))) +
                       " per second";
    if (done > 0) text += ", " + durationText(seconds / done - seconds) + " left";
    show(text, done);
}

void RunLog::show(const std::string& text, double done) {
    constexpr int width = 20;
    if (progress_ == ProgressForm::lines) return report(text);
    const auto filled = static_cast<std::size_t>(std::clamp(done, 0.0, 1.0) * width);
    const std::string bar = "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] ";
    std::fprintf(stderr, "\r%-79s", ((done < 0 ? "" : bar) + text).c_str());
    std::fflush(stderr);
    hasBar_ = true;
}

void RunLog::clearBar() {
    if (!std::exchange(hasBar_, false)) return;
    std::fprintf(stderr, "\r%-79s\r", "");
    std::fflush(stderr);
}

void RunLog::finish() {
    const std::scoped_lock lock(mutex_);
    clearBar();
    std::vector<std::pair<std::string, std::uint64_t>> repeated(remarks_.begin(), remarks_.end());
    std::sort(repeated.begin(), repeated.end());
    for (const auto& [remark, count] : repeated) {
        if (count > 0) report(data_ + ": " + std::to_string(count) + " more with: " + remark);
    }
    if (unsaid_ > 0) report(data_ + ": " + std::to_string(unsaid_) + " more messages");
    if (counts_.failed > 0) {
        const std::uint64_t all = counts_.made + counts_.there + counts_.failed;
        report(data_ + ": " + std::to_string(counts_.failed) + " of " + std::to_string(all) + " records failed");
    }
}

RunLog::Counts RunLog::counts() const {
    const std::scoped_lock lock(mutex_);
    return counts_;
}

std::vector<RunLog::Failed> RunLog::failures() const {
    const std::scoped_lock lock(mutex_);
    std::vector<Failed> sorted = failures_;
    std::sort(sorted.begin(), sorted.end(),
              [](const Failed& left, const Failed& right) { return left.number < right.number; });
    return sorted;
}

double RunLog::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
}

}  // namespace velmor::cli
