#include "cli/ErrorReport.h"

#include <algorithm>
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
    text += shown(entry.handler) + ": " + shown(entry.message);
    if (entry.number != 0) text += " (error " + std::to_string(entry.number) + ")";
    const bool isTold = outermostTag.find(entry.tagData) != outermostTag.npos;
    if (!isTold) text += "; " + shown(entry.tagData);
    if (!entry.errorData.empty()) text += "; " + shown(entry.errorData);
    return text;
}

}  // namespace

ErrorReport::ErrorReport(std::string name, std::u16string_view text) : name_(std::move(name)), lineStarts_{0} {
    for (auto end = text.find(u'\n'); end != text.npos; end = text.find(u'\n', end + 1)) lineStarts_.push_back(end + 1);
}

void ErrorReport::heard(const ErrorLogEntry& entry, const OutermostTag& tag) {
    auto key = keyOf(entry);
    if (const auto known = known_.find(key); known != known_.end()) {
        ++lines_[known->second].count;
    } else if (lines_.size() < maximalLines) {
        known_.emplace(std::move(key), lines_.size());
        lines_.push_back({placeOf(tag.position) + ": " + describe(entry, tag.text), 1});
    } else {
        ++others_;
    }
}

bool ErrorReport::print() const {
    for (const Line& line : lines_) {
        report(line.count == 1 ? line.text : line.text + " (" + std::to_string(line.count) + " times)");
    }
    if (others_ > 0) report(name_ + ": " + std::to_string(others_) + " more errors");
    return !lines_.empty();
}

std::string ErrorReport::placeOf(std::int32_t position) const {
    if (position < 1) return name_;
    const auto index = static_cast<std::size_t>(position) - 1;
    const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), index);
    return name_ + ":" + std::to_string(next - lineStarts_.begin()) + ":" + std::to_string(index - *(next - 1) + 1);
}

}  // namespace velmor::cli
