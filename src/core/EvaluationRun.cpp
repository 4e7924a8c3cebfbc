#include "core/EvaluationRun.h"

#include <algorithm>
#include <utility>

#include "core/EvaluationRules.h"
#include "core/TagListener.h"
#include "properties/privProperty.h"
#include "text/Encoding.h"

namespace velmor {

namespace {

// With "," between thousands.
std::u16string grouped(std::int64_t number) {
    std::u16string text = fromUtf8(std::to_string(number));
    for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, u",");
    return text;
}

}  // namespace

std::u16string limitMessage(EvaluationLimit limit) {
    const EvaluationRules& rules = EvaluationRun::current().rules();
    switch (limit) {
        case EvaluationLimit::levels:
            return u"Tags are nested beyond " + grouped(rules.maximumLevels) + u" levels";
        case EvaluationLimit::dispatches:
            return u"More than " + grouped(rules.maximumTags) + u" tags in one evaluation";
        case EvaluationLimit::held:
            return u"More than " + grouped(maximumHeld) + u" characters held at once in one evaluation";
        case EvaluationLimit::decoded:
            return u"More than " + grouped(maximumDecoded) + u" bytes of compressed values in one evaluation";
        case EvaluationLimit::kept:
            return u"The values of further tags within tags are not kept";
        case EvaluationLimit::output:
            return u"More than " + grouped(rules.maximumOutput) + u" characters in the result";
        case EvaluationLimit::characters:
            break;
    }
    return u"More than " + grouped(maximumCharacters) + u" characters in one evaluation";
}

const EvaluationRules& EvaluationRun::noRules() noexcept {
    static const EvaluationRules none;
    return none;
}

bool EvaluationRun::tracksOrigins() const noexcept {
    return TagListener::current() != nullptr || rules().looksAtValues();
}

std::optional<EvaluationLimit> EvaluationRun::countDispatch() noexcept {
    if (tooDeep_) return EvaluationLimit::levels;
    if (characters_ > maximumCharacters) return EvaluationLimit::characters;
    if (dispatches_ >= rules().maximumTags) return EvaluationLimit::dispatches;
    ++dispatches_;
    return std::nullopt;
}

std::optional<EvaluationLimit> EvaluationRun::countCharacters(std::size_t count) noexcept {
    characters_ += static_cast<std::int64_t>(count);
    if (characters_ <= maximumCharacters) return std::nullopt;
    return EvaluationLimit::characters;
}

std::optional<EvaluationLimit> EvaluationRun::countValue(std::size_t size) noexcept {
    if (const auto limit = countCharacters(size)) return limit;
    return apart_ == 0 || hold(size) ? std::nullopt : std::optional(EvaluationLimit::held);
}

std::size_t EvaluationRun::longestValue() const noexcept {
    const auto left = static_cast<std::size_t>(std::max<std::int64_t>(maximumCharacters - characters_, 0));
    return apart_ > 0 ? std::min(left, holdable()) : left;
}

bool EvaluationRun::hold(std::size_t count) noexcept {
    if (count > holdable()) return false;
    held_ += static_cast<std::int64_t>(count);
    return true;
}

bool EvaluationRun::store(std::size_t size, std::size_t replaced) noexcept {
    const std::int64_t freed = std::min(static_cast<std::int64_t>(replaced), stored_);
    const std::int64_t more = static_cast<std::int64_t>(size) - freed;
    if (more > heldMost_ - held_) return false;
    held_ += more;
    stored_ += more;
    return true;
}

bool EvaluationRun::keep(std::size_t bytes) noexcept {
    if (bytes > keepable_) return false;
    keepable_ -= bytes;
    return true;
}

bool EvaluationRun::isFirst(EvaluationLimit limit) noexcept {
    const unsigned bit = 1u << static_cast<unsigned>(limit);
    return (std::exchange(reported_, reported_ | bit) & bit) == 0;
}

EvaluationLevel::EvaluationLevel() noexcept : run_(EvaluationRun::current()) {
    if (run_.level_ == 0) {
        run_ = EvaluationRun();
        run_.logEntries = &logEntries_;
    }
    run_.tooDeep_ |= ++run_.level_ > run_.rules().maximumLevels;
}

EvaluationLevel::~EvaluationLevel() {
    --run_.level_;
    if (run_.level_ <= 1) run_.tooDeep_ = false;
    if (run_.level_ == 0) run_ = EvaluationRun();
}

std::optional<EvaluationLimit> EvaluationLevel::refused() const noexcept {
    return run_.level_ > run_.rules().maximumLevels ? std::optional(EvaluationLimit::levels) : std::nullopt;
}

}  // namespace velmor
