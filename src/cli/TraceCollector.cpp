#include "cli/TraceCollector.h"

#include <algorithm>
#include <new>

namespace velmor::cli {
namespace {

std::chrono::nanoseconds now() noexcept {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

// Room for a long template: reserved memory costs nothing until it is used, moved memory does.
TraceCollector::TraceCollector(const Limits& limits) : limits_(limits) {
    open_.reserve(kMostOpen);
    tags_.reserve(std::size_t{1} << 17);
    names_.reserve(std::size_t{1} << 22);
}

void TraceCollector::tagBegins(const HeardTag& tag) noexcept {
    std::uint32_t index = kNone;
    try {
        if (omitted_ == 0 && tags_.size() < limits_.tags) index = add(tag);
    } catch (const std::bad_alloc&) {
    }
    if (index == kNone) ++omitted_;
    open_.push_back({index, true});
}

std::uint32_t TraceCollector::add(const HeardTag& heard) {
    Tag tag;
    if (!open_.empty()) {
        const Open& around = open_.back();
        if (!around.isTag) tag.text = around.index;
        tag.parent = around.isTag || around.index == kNone ? around.index : texts_[around.index].tag;
    }
    if (heard.index == 0) tag.text = kNone;
    tag.index = static_cast<std::uint32_t>(heard.index);
    tag.position = static_cast<std::uint32_t>(heard.position);
    tag.nameStart = static_cast<std::uint32_t>(names_.size());
    tag.nameLength = static_cast<std::uint32_t>(std::min(heard.name.size(), limits_.ofName));
    tag.origin = heard.origin;
    names_.append(heard.name, 0, tag.nameLength);
    tag.time = now();
    tags_.push_back(tag);
    return static_cast<std::uint32_t>(tags_.size() - 1);
}

void TraceCollector::tagEnds(std::size_t start, std::u16string_view result) noexcept {
    const std::uint32_t index = open_.back().index;
    open_.pop_back();
    if (index == kNone) return;
    Tag& tag = tags_[index];
    tag.start = static_cast<std::uint32_t>(start);
    tag.length = static_cast<std::uint32_t>(result.size());
    tag.time = now() - tag.time;
}

void TraceCollector::textBegins(std::size_t start, bool isApart) noexcept {
    std::uint32_t index = kNone;
    try {
        if (omitted_ == 0) index = addText(start, isApart);
    } catch (const std::bad_alloc&) {
        ++omitted_;
    }
    open_.push_back({index, false});
}

std::uint32_t TraceCollector::addText(std::size_t start, bool isApart) {
    Text text;
    if (!open_.empty()) text.tag = open_.back().index;
    text.start = static_cast<std::uint32_t>(start);
    text.isApart = isApart;
    texts_.push_back(text);
    const auto index = static_cast<std::uint32_t>(texts_.size() - 1);
    if (!isApart && text.tag != kNone) tags_[text.tag].nested = index;
    return index;
}

void TraceCollector::textMoves() noexcept {
    if (open_.back().index != kNone) texts_[open_.back().index].hasMoved = true;
}

// A tag that has not ended yields nothing.
void TraceCollector::textEnds(std::size_t length) noexcept {
    while (open_.back().isTag) {
        if (open_.back().index != kNone) tags_[open_.back().index].time = {};
        open_.pop_back();
    }
    if (open_.back().index != kNone) texts_[open_.back().index].length = static_cast<std::uint32_t>(length);
    open_.pop_back();
}

void TraceCollector::resultMoves() noexcept {
    if (!texts_.empty()) texts_.front().hasMoved = true;
}

}  // namespace velmor::cli
