#include "core/PlainTemplate.h"

#include <algorithm>

#include "core/BuiltInCommands.h"
#include "core/EvaluationRules.h"
#include "core/TagListener.h"
#include "core/TimingLog.h"
#include "properties/privProperties.h"
#include "text/RtfStart.h"

namespace velmor {

namespace {

bool isPlainValue(std::u16string_view value) noexcept {
    return !value.starts_with(rtfStart) && findAngle(value, 0) == value.size();
}

// Whether a marker may begin there that the value of the next tag completes.
bool mayBeginMarker(std::u16string_view text) noexcept {
    const std::u16string_view end = text.substr(text.size() - std::min(text.size(), openingMarker.size() - 1));
    return findAngle(end, 0) < end.size();
}

bool isObserved(platform::Services& services) noexcept {
    TimingLog::readSettings(services);
    return TimingLog::isOn() || TagListener::current() != nullptr || EvaluationRun::current().level() > 0;
}

}  // namespace

PlainTemplate::PlainTemplate(std::u16string_view text, const TopLevelTags& tags) : text_(text) {
    if (text.starts_with(rtfStart) || tags.firstStray != TopLevelTags::noTag) return;
    const bool arePlain =
        std::all_of(tags.tags.begin(), tags.tags.end(), [this](const TagSpan& tag) { return add(tag); });
    if (!arePlain || tags.tags.size() > maximumDispatches) pieces_.clear();
}

bool PlainTemplate::add(const TagSpan& tag) {
    const std::u16string_view name = tag.inner(text_);
    const auto property = plainProperty(name);
    const std::u16string_view before = text_.substr(end_, tag.open - end_);
    if (!property || !name.ends_with(elementSeparator) || mayBeginMarker(before)) return false;
    pieces_.push_back({before, property->name, property->value});
    end_ = tag.end();
    return true;
}

std::optional<std::u16string> PlainTemplate::result(platform::Services& services,
                                                    const privProperties& properties) const {
    if (pieces_.empty() || isObserved(services) || EvaluationRules::areIn(properties)) return std::nullopt;
    std::u16string result;
    std::u16string buffer;
    result.reserve(text_.size());
    for (const Piece& piece : pieces_) {
        const std::u16string_view value = properties.textOf(piece.name, buffer).value_or(piece.value);
        const std::size_t size = text_.size() + result.size() + value.size();
        if (!isPlainValue(value) || size > static_cast<std::size_t>(maximumCharacters)) return std::nullopt;
        result.append(piece.text).append(value);
    }
    return result.append(text_.substr(end_));
}

}  // namespace velmor
