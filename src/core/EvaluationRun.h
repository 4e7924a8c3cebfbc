#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/Limits.h"

namespace velmor {

class privProperty;
struct EvaluationRules;

// Limits of one top-level evaluation, far above what documents use. A tag beyond a limit yields
// the empty text, each limit that is met writes one entry to the error log, and evaluation goes on.

// Running evaluation loops, the template's own being the first. They all fit in a stack of 1 MB,
// a late-bound handler at each included.
inline constexpr int deepestLevel = 100;
// Dispatched tags.
inline constexpr std::int64_t maximumDispatches = 10'000'000;
// Characters of the template and of all values that tags yielded, on every level.
inline constexpr std::int64_t maximumCharacters = (std::int64_t{1} << 30) - 1;
// Characters that one evaluation holds besides its outermost text and its result: the texts of the
// levels below the outermost, the results of texts that are evaluated on their own, and the
// properties that it sets. An outermost text allows four times its own length more.
inline constexpr std::int64_t maximumHeld = std::int64_t{1} << 25;
// Bytes of the values in which tags were evaluated, kept for a reader of Tags.
inline constexpr std::size_t maximumKept = std::size_t{1} << 27;
// Bytes that the compressed values in tags and list files give, all together.
inline constexpr std::size_t maximumDecoded = std::size_t{1} << 25;
// Entries in the error log; one more counts the others.
inline constexpr std::int64_t maximumLogEntries = 10'000;

enum class EvaluationLimit { levels, dispatches, characters, held, decoded, kept, output };

// What an error-log entry says of the limit.
std::u16string limitMessage(EvaluationLimit limit);

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
    static EvaluationRun& current() noexcept { return current_; }

    int level() const noexcept { return level_; }
    // Counts one more dispatched tag; the limit that forbids it, if one does. Once there are too
    // many levels every dispatch is refused until the run is back in the outermost text, so that
    // texts which contain themselves several times end at once.
    std::optional<EvaluationLimit> countDispatch() noexcept;
    // Counts characters. Once they exceed the limit every dispatch is refused: a huge text would
    // otherwise be made over and over.
    std::optional<EvaluationLimit> countCharacters(std::size_t count) noexcept;
    // The same for a new value, which is held in addition while it is part of a text of its own.
    std::optional<EvaluationLimit> countValue(std::size_t size) noexcept;
    // The size of the longest value that no limit forbids.
    std::size_t longestValue() const noexcept;
    // The outermost text begins.
    void beginText(std::size_t size) noexcept { heldMost_ = maximumHeld + 4 * static_cast<std::int64_t>(size); }
    // Holds so many characters more, until they are released; false, and nothing held, beyond the limit.
    bool hold(std::size_t count) noexcept;
    void release(std::size_t count) noexcept { held_ -= static_cast<std::int64_t>(count); }
    // A property takes the place of another; both sizes in characters. False beyond the limit.
    bool store(std::size_t size, std::size_t replaced) noexcept;
    // Keeps so many bytes until the evaluation ends; false, and nothing kept, beyond the limit.
    bool keep(std::size_t bytes) noexcept;

    // What the outermost text's host asks for.
    const EvaluationRules& rules() const noexcept { return rules_ != nullptr ? *rules_ : noRules(); }
    void rules(const EvaluationRules* rules) noexcept { rules_ = rules; }
    // Whether TagContext::origin is kept: a rule or a listener asks for it.
    bool tracksOrigins() const noexcept;
    // True the first time that it is asked for a limit: that limit's one entry is to be written.
    bool isFirst(EvaluationLimit limit) noexcept;

    bool hasFailed = false;                  // no tag is answered any more, and the outermost result is empty
    bool hidesMarkers = false;               // see EvaluationRules.h
    bool keepsTag = false;                   // the tag that was dispatched last stays as it is written
    std::size_t emptyTags = 0;               // marks for empty tags (rtf/edit/EmptyParagraphs.h) that were written
    std::size_t decodable = maximumDecoded;  // bytes of compressed values that may still come
    OutermostTag outermostTag;  // empty at the beginning and between two tags; views of the text under evaluation
    LogEntryCount* logEntries = nullptr;  // what this evaluation added to the error log; null while none runs

private:
    friend class EvaluationLevel;
    friend class TextApart;

    static thread_local EvaluationRun current_;
    static const EvaluationRules& noRules() noexcept;

    std::size_t holdable() const noexcept { return static_cast<std::size_t>(heldMost_ - held_); }

    int level_ = 0;
    bool tooDeep_ = false;
    unsigned reported_ = 0;
    std::int64_t dispatches_ = 0;
    std::int64_t characters_ = 0;
    std::int64_t held_ = 0;
    std::int64_t heldMost_ = maximumHeld;
    std::int64_t stored_ = 0;  // the part of held_ that lies in properties
    std::size_t keepable_ = maximumKept;
    int apart_ = 0;  // texts of their own that are being evaluated
    const EvaluationRules* rules_ = nullptr;
};

constinit inline thread_local EvaluationRun EvaluationRun::current_{};

// Sets a value for as long as it lives.
template <class T>
class Temporarily {
public:
    Temporarily(T& target, T value) : target_(target), before_(target) { target = value; }
    ~Temporarily() { target_ = before_; }
    Temporarily(const Temporarily&) = delete;
    Temporarily& operator=(const Temporarily&) = delete;

private:
    T& target_;
    T before_;
};

// Held by each evaluation loop while it runs.
class EvaluationLevel {
public:
    EvaluationLevel() noexcept;
    ~EvaluationLevel();
    EvaluationLevel(const EvaluationLevel&) = delete;
    EvaluationLevel& operator=(const EvaluationLevel&) = delete;

    // The limit when this level is one too many.
    std::optional<EvaluationLimit> refused() const noexcept;

private:
    EvaluationRun& run_;
    LogEntryCount logEntries_;  // of the outermost level, for all of them
};

// Counts the text of a level as held while it lives.
class HeldText {
public:
    explicit HeldText(std::size_t size) noexcept
        : size_(EvaluationRun::current().hold(size) ? size : 0), fits_(size_ == size) {}
    ~HeldText() { EvaluationRun::current().release(size_); }
    HeldText(const HeldText&) = delete;
    HeldText& operator=(const HeldText&) = delete;

    bool fits() const noexcept { return fits_; }

private:
    const std::size_t size_;
    const bool fits_;
};

// While it lives, the compressed values in texts that are read count against the running evaluation.
class CountedDecoding {
public:
    // True when nothing is left for a value of this text.
    static bool refused(std::u16string_view text) noexcept {
        return EvaluationRun::current().decodable == 0 && text.find(u"~GZ\"") != text.npos;
    }

private:
    EvaluationRun& run_ = EvaluationRun::current();
    const Temporarily<std::size_t*> counted_{decodingAllowance, run_.level() > 0 ? &run_.decodable : nullptr};
};

// While it lives, the values that tags yield are held; those of the outermost text are not.
class TextApart {
public:
    TextApart() noexcept : before_(run_.held_ - run_.stored_), counts_(run_.level_ > 1) {
        if (counts_) ++run_.apart_;
    }
    ~TextApart() {
        if (!counts_) return;
        --run_.apart_;
        run_.held_ = before_ + run_.stored_;
    }
    TextApart(const TextApart&) = delete;
    TextApart& operator=(const TextApart&) = delete;

private:
    EvaluationRun& run_ = EvaluationRun::current();
    const std::int64_t before_;  // what was held, apart from properties
    const bool counts_;
};

}  // namespace velmor
