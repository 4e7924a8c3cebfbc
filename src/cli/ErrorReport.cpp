#include "cli/ErrorReport.h"

#include <utility>

#include "cli/LineText.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::size_t maximalLines = 1000;

std::u16string keyOf(const ErrorLogEntry& entry) {
    std::u16string key(entry.handler);
    key.append(1, u'\0').append(entry.message).append(1, u'\0').append(entry.errorData);
    return key.append(1, u'\0').append(fromUtf8(std::to_string(entry.number)));
}

std::string describe(const ErrorLogEntry& entry, std::u16string_view outermostTag) {
    std::string text;
    if (!outermostTag.empty()) text = shown(outermostTag) + ": ";
    if (!entry.handler.empty()) text += shown(entry.handler) + ": ";
    text += shown(entry.message);
    if (entry.number != 0) text += " (error " + std::to_string(entry.number) + ")";
    const bool isTold = outermostTag.find(entry.tagData) != outermostTag.npos;
    if (!isTold) text += "; " + shown(entry.tagData);
    if (!entry.errorData.empty()) text += "; " + shown(entry.errorData);
    return text;
}

}  // namespace

void ErrorReport::heard(const ErrorLogEntry& entry, const OutermostTag& tag) {
    auto key = keyOf(entry);
    if (const auto known = known_.find(key); known != known_.end()) {
        ++lines_[known->second].count;
    } else if (lines_.size() < maximalLines) {
        known_.emplace(std::move(key), lines_.size());
        lines_.push_back({placeOf(tag), describe(entry, tag.text), 1});
    } else {
        ++others_;
    }
}

bool ErrorReport::print() const {
    for (const std::string& message : messages()) report(message);
    if (others_ > 0) report(name_ + ": " + std::to_string(others_) + " more errors");
    return !lines_.empty();
}

std::vector<std::string> ErrorReport::messages() const {
    std::vector<std::string> messages;
    for (const Line& line : lines_) {
        const std::string count = line.count == 1 ? "" : " (" + std::to_string(line.count) + " times)";
        messages.push_back(textOf(line.place) + ": " + line.text + count);
    }
    return messages;
}

std::optional<TemplatePlaces::Place> ErrorReport::placeOf(const OutermostTag& tag) const {
    if (tag.index < 1) return std::nullopt;
    return places_.of(static_cast<std::size_t>(tag.index), static_cast<std::size_t>(tag.position));
}

std::string ErrorReport::textOf(const std::optional<TemplatePlaces::Place>& place) const {
    return place ? name_ + ":" + std::to_string(place->line) + ":" + std::to_string(place->column) : name_;
}

}  // namespace velmor::cli
