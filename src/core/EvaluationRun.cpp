#include "core/EvaluationRun.h"

#include "properties/privProperty.h"

namespace velmor {

std::u16string_view limitMessage(EvaluationLimit limit) noexcept {
    switch (limit) {
        case EvaluationLimit::levels:
            return u"Tags are nested beyond 100 levels";
        case EvaluationLimit::dispatches:
            return u"More than 10,000,000 tags in one evaluation";
        case EvaluationLimit::characters:
            break;
    }
    return u"More than 1,073,741,823 characters in one evaluation";
}

EvaluationRun& EvaluationRun::current() noexcept {
    static thread_local EvaluationRun run;
    return run;
}

std::optional<EvaluationLimit> EvaluationRun::countDispatch() noexcept {
    if (tooDeep_) return EvaluationLimit::levels;
    if (characters_ > kMaximumCharacters) return EvaluationLimit::characters;
    if (dispatches_ >= kMaximumDispatches) return EvaluationLimit::dispatches;
    ++dispatches_;
    return std::nullopt;
}

std::optional<EvaluationLimit> EvaluationRun::countCharacters(std::size_t count) noexcept {
    characters_ += static_cast<std::int64_t>(count);
    if (characters_ <= kMaximumCharacters) return std::nullopt;
    return EvaluationLimit::characters;
}

bool EvaluationRun::isFirst(EvaluationLimit limit) noexcept {
    const unsigned bit = 1u << static_cast<unsigned>(limit);
    const bool first = (reported_ & bit) == 0;
    reported_ |= bit;
    return first;
}

EvaluationLevel::EvaluationLevel() noexcept : run_(EvaluationRun::current()) {
    if (run_.level_ == 0) {
        run_ = EvaluationRun();
        run_.logEntries_ = &logEntries_;
    }
    ++run_.level_;
}

EvaluationLevel::~EvaluationLevel() {
    --run_.level_;
    if (run_.level_ <= 1) run_.tooDeep_ = false;
    if (run_.level_ == 0) run_ = EvaluationRun();
}

std::optional<EvaluationLimit> EvaluationLevel::refused() noexcept {
    if (run_.level_ <= kMaximumLevels) return std::nullopt;
    run_.tooDeep_ = true;
    return EvaluationLimit::levels;
}

}  // namespace velmor
