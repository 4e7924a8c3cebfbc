#include "text/SpareTail.h"

#include <algorithm>

namespace velmor {

namespace {

// Units copied at once, in expectation of further removals.
constexpr std::size_t foresight = 512;
// No such extra copying once unused copies exceed the tail by more than this.
constexpr std::size_t allowedWaste = 4096;

}  // namespace

void SpareTail::copyTo(std::size_t count, char16_t* target) const noexcept {
    for (auto run = runs_.rbegin(); run != runs_.rend() && count > 0; ++run) {
        const std::size_t taken = std::min<std::size_t>(count, run->count);
        std::copy_n(texts_.data() + run->end - run->count, taken, target);
        target += taken;
        count -= taken;
    }
    std::fill_n(target, count, u' ');
}

void SpareTail::keepLast(const GapText& content, std::size_t count, std::size_t rest) {
    if (count == 0) return;
    if (count > unchanged_) {
        const std::size_t hoped = std::max(count, std::min(foresight, rest));
        const bool affordable = texts_.size() + hoped <= size_ + count + allowedWaste;
        copyEnd(content, affordable ? hoped : count);
    }
    runs_.push_back({static_cast<std::uint32_t>(texts_.size()), static_cast<std::uint32_t>(count)});
    size_ += count;
    contentChanged(rest);
}

void SpareTail::copyEnd(const GapText& content, std::size_t count) {
    unchanged_ = 0;
    texts_.resize(runs_.empty() ? 0 : runs_.back().end);
    const auto [left, right] = content.range(content.size() - count, count);
    texts_.append(left).append(right);
    unchanged_ = count;
}

void SpareTail::drop(std::size_t count) noexcept {
    count = std::min(count, size_);
    size_ -= count;
    while (count > 0) {
        Run& first = runs_.back();
        const std::size_t taken = std::min<std::size_t>(count, first.count);
        first.count -= static_cast<std::uint32_t>(taken);
        count -= taken;
        if (first.count == 0) runs_.pop_back();
    }
}

}  // namespace velmor
