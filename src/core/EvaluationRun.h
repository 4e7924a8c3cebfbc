#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace velmor {

class privProperty;

// Limits of one top-level evaluation, far above what documents use. A tag beyond a limit yields
// the empty text, each limit that is met writes one entry to the error log, and evaluation goes on.

// Running evaluation loops, the template's own being the first. They all fit in a stack of 1 MB,
// a late-bound handler at each included.
inline constexpr int kMaximumLevels = 100;
// Dispatched tags.
inline constexpr std::int64_t kMaximumDispatches = 10'000'000;
// Characters of the template and of all values that tags yielded, on every level.
inline constexpr std::int64_t kMaximumCharacters = (std::int64_t{1} << 30) - 1;
// Entries in the error log; one more counts the others.
inline constexpr std::int64_t kMaximumLogEntries = 10'000;

enum class EvaluationLimit { levels, dispatches, characters };

// What an error-log entry says of the limit.
std::u16string_view limitMessage(EvaluationLimit limit) noexcept;

// The tag of the outermost text that is being answered.
struct OutermostTag {
    std::int32_t index = 0;     // as in kvTags::Item; 0 while none is being answered
    std::int32_t position = 0;  // of its opening marker in the text
    std::u16string_view text;   // with its markers
};

struct LogEntryCount {
    std::int64_t count = 0;
    std::shared_ptr<privProperty> last;  // the entry that counts those beyond the limit
};

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
    // Empty at the beginning and between two tags. Holds views of the text under evaluation.
    const OutermostTag& outermostTag() const noexcept { return outermostTag_; }
    void outermostTag(const OutermostTag& tag) noexcept { outermostTag_ = tag; }
    // The entries that this evaluation added to the error log; null while none runs.
    LogEntryCount* logEntries() noexcept { return logEntries_; }
    // True the first time that it is asked for a limit: that limit's one entry is to be written.
    bool isFirst(EvaluationLimit limit) noexcept;

private:
    friend class EvaluationLevel;

    int level_ = 0;
    bool tooDeep_ = false;
    unsigned reported_ = 0;
    std::int64_t dispatches_ = 0;
    std::int64_t characters_ = 0;
    OutermostTag outermostTag_;
    LogEntryCount* logEntries_ = nullptr;
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
    LogEntryCount logEntries_;  // of the outermost level, for all of them
};

}  // namespace velmor
