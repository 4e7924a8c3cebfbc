#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velmor {

// Limits of one top-level evaluation, far above what documents use. A tag beyond a limit yields
// the empty text, each limit that is met writes one entry to the error log, and evaluation goes on.

// Running evaluation loops, the template's own being the first. They all fit in a stack of 1 MB,
// a late-bound handler at each included.
inline constexpr int kMaximumLevels = 100;
// Dispatched tags.
inline constexpr std::int64_t kMaximumDispatches = 10'000'000;
// Characters of the template and of all values that tags yielded, on every level.
inline constexpr std::int64_t kMaximumCharacters = (std::int64_t{1} << 30) - 1;

enum class EvaluationLimit { levels, dispatches, characters };

// What an error-log entry says of the limit.
std::u16string_view limitMessage(EvaluationLimit limit) noexcept;

// What the thread's running evaluation has used up. Evaluations that begin while another runs on
// the same thread (in a handler, say) belong to that one.
class EvaluationRun {
public:
    static EvaluationRun& current() noexcept;

    int level() const noexcept { return level_; }
    // Counts one more dispatched tag; the limit that forbids it, if one does. Once there are too
    // many levels every dispatch is refused until the run is back in the outermost text, so that
    // texts which contain themselves several times end at once.
    std::optional<EvaluationLimit> countDispatch() noexcept;
    // How many more characters the limit allows.
    std::size_t charactersLeft() const noexcept {
        return characters_ < kMaximumCharacters ? static_cast<std::size_t>(kMaximumCharacters - characters_) : 0;
    }
    // Counts characters. Once they exceed the limit every dispatch is refused: a huge text would
    // otherwise be made over and over.
    std::optional<EvaluationLimit> countCharacters(std::size_t count) noexcept;
    // True the first time that it is asked for a limit: that limit's one entry is to be written.
    bool isFirst(EvaluationLimit limit) noexcept;

private:
    friend class EvaluationLevel;

    int level_ = 0;
    bool tooDeep_ = false;
    unsigned reported_ = 0;
    std::int64_t dispatches_ = 0;
    std::int64_t characters_ = 0;
};

// Held by each evaluation loop while it runs.
class EvaluationLevel {
public:
    EvaluationLevel() noexcept;
    ~EvaluationLevel();
    EvaluationLevel(const EvaluationLevel&) = delete;
    EvaluationLevel& operator=(const EvaluationLevel&) = delete;

    // The limit when this level is one too many.
    std::optional<EvaluationLimit> refused() noexcept;

private:
    EvaluationRun& run_;
};

}  // namespace velmor
