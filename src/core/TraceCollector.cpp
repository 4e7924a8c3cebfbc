#include "core/TraceCollector.h"

#include <algorithm>
#include <array>
#include <new>

#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {
namespace {

std::chrono::nanoseconds now() noexcept {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

std::string_view originText(Origin origin) noexcept {
    constexpr std::array<std::string_view, 4> origins = {"template", "include", "property", "handler"};
    return origins[static_cast<std::size_t>(origin)];
}

std::u16string_view commandPart(std::u16string_view name) noexcept {
    std::size_t end = std::min(name.find(handlerSeparator), name.size());
    while (end < name.size() && name[end] != elementSeparator && name[end] != u'=') ++end;
    return name.substr(0, end);
}

std::pair<std::u16string, std::u16string> handlerAndCommand(std::u16string_view name) {
    name = commandPart(name);
    const std::size_t separator = name.find(handlerSeparator);
    if (separator == name.npos) return {};
    return {upperCase(name.substr(0, separator)), upperCase(name.substr(separator + 1))};
}

// Room for a long template: reserved memory costs nothing until it is used, moved memory does.
TraceCollector::TraceCollector(const Limits& limits) : limits_(limits) {
    open_.reserve(mostOpen);
    tags_.reserve(std::size_t{1} << 17);
    names_.reserve(std::size_t{1} << 22);
}

void TraceCollector::tagBegins(const HeardTag& tag) noexcept {
    std::uint32_t index = noTag;
    try {
        if (omitted_ == 0 && tags_.size() < limits_.tags) index = add(tag);
    } catch (const std::bad_alloc&) {
    }
    if (index == noTag) ++omitted_;
    open_.push_back({index, true});
}

std::uint32_t TraceCollector::add(const HeardTag& heard) {
    Tag tag;
    if (!open_.empty()) {
        const Open& around = open_.back();
        if (!around.isTag) tag.text = around.index;
        tag.parent = around.isTag || around.index == noTag ? around.index : texts_[around.index].tag;
    }
    if (heard.index == 0) tag.text = noTag;
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
    if (index == noTag) return;
    Tag& tag = tags_[index];
    tag.start = static_cast<std::uint32_t>(start);
    tag.length = static_cast<std::uint32_t>(result.size());
    tag.time = now() - tag.time;
}

void TraceCollector::textBegins(std::size_t start, bool isApart) noexcept {
    std::uint32_t index = noTag;
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
    if (!isApart && text.tag != noTag) tags_[text.tag].nested = index;
    return index;
}

void TraceCollector::textMoves() noexcept {
    if (open_.back().index != noTag) texts_[open_.back().index].hasMoved = true;
}

// A tag that has not ended yields nothing.
void TraceCollector::textEnds(std::size_t length) noexcept {
    while (open_.back().isTag) {
        if (open_.back().index != noTag) tags_[open_.back().index].time = {};
        open_.pop_back();
    }
    if (open_.back().index != noTag) texts_[open_.back().index].length = static_cast<std::uint32_t>(length);
    open_.pop_back();
}

std::vector<TraceCollector::Place> TraceCollector::places() const {
    std::vector<std::size_t> starts;
    std::vector<Place> places;
    starts.reserve(tags_.size());
    places.reserve(tags_.size());
    for (const Tag& tag : tags_) {
        starts.push_back(writtenStart(tag, starts));  // parents precede their children
        Place place{starts.back(), tag.length};
        if (place.start != npos) {
            const std::size_t end = shiftedPlace(shifts_, place.start + place.length);
            place.start = shiftedPlace(shifts_, place.start);
            place.length = end - place.start;
        }
        places.push_back(place);
    }
    return places;
}

// Where the result of the tag begins before empty paragraphs are removed.
std::size_t TraceCollector::writtenStart(const Tag& tag, const std::vector<std::size_t>& parents) const {
    if (tag.text == noTag) return npos;
    const Text& text = texts_[tag.text];
    if (text.isApart || text.hasMoved) return npos;
    const std::size_t offset = tag.start - text.start;
    if (text.tag == noTag) return offset;
    const Tag& parent = tags_[text.tag];
    const bool isKept = parent.nested == tag.text && !hasMoved(parent) && parents[text.tag] != npos;
    return isKept ? parents[text.tag] + offset : npos;
}

bool TraceCollector::hasMoved(const Tag& tag) const {
    if (tag.nested == noTag) return false;
    const Text& text = texts_[tag.nested];
    return text.hasMoved || text.length != tag.length;
}

}  // namespace velmor
