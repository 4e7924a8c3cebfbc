#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/EvaluationRun.h"
#include "core/FinishedMarkers.h"
#include "core/PairedText.h"
#include "core/TagList.h"
#include "core/TimingLog.h"

namespace velmor {

// Replaces the tags of one text by their results.
//
// The rule: the tags are taken in order; of each, the literal text (markers, name with its final
// ":", without regard to case) is sought from the start of the text as it is by then, and failing
// that the same without the final ":". The first place found is replaced by the tag's result; a
// tag that is found nowhere is not evaluated. So a result may absorb a later tag's text, and "X"
// and "X:" may change places.
//
// The way: the result is written from left to right, each tag at its own place, as long as that
// is provably the first one found. Every place where a tag's text can stand is a complete pair of
// markers. One that begins in the finished part ends there, too, so a look at the pairs that the
// finished part holds (mostly none) settles what lies before; a tag with its final ":" then stands
// at its own place. One without must not have its text with the ":" anywhere behind, which an
// index of the text's pairs tells. When the proof fails, the rest goes the literal way.
class Evaluation {
public:
    // What nested evaluations use again and again: for each depth a value and the list of its tags.
    class Scratch;

    // Appends to target. The list's text must not change meanwhile.
    Evaluation(TagList& tags, std::u16string& target);
    ~Evaluation();
    Evaluation(const Evaluation&) = delete;
    Evaluation& operator=(const Evaluation&) = delete;
    void run();

    // The text as far as it has come: what is finished, and the rest with its tags.
    std::u16string soFar() const;

private:
    Evaluation(TagList& tags, std::u16string& target, Scratch& scratch, std::size_t depth);
    Scratch& scratch();

    void finishTo(std::size_t position);
    void lookForMarkers(std::size_t gap);
    bool ownPlaceIsFirst(std::size_t index);
    bool hasOpeningMarkerAfter(std::size_t index) const;

    // The results of the tags go to `results`; places in it are counted from `base`.
    void appendResult(std::size_t index, std::u16string& results, std::size_t base);
    bool answerBuiltIn(std::size_t index, std::u16string& results, std::size_t base);
    void appendBuiltIn(std::size_t index, std::u16string& results);
    std::u16string_view makeValue(std::size_t index, std::u16string& text);
    std::u16string_view counted(std::size_t index, std::u16string_view value);
    void report(EvaluationLimit limit, std::size_t index);

    void runLiterally(std::size_t from);
    std::size_t runPaired(std::size_t from, std::u16string& text, std::u16string& results);
    std::size_t runPlainly(std::size_t from, std::u16string& text, std::u16string& results);
    bool replaceLiterally(std::size_t index, std::u16string_view name, std::u16string& text, std::u16string& results);

    // Then every tag is answered by its object, which writes the lines.
    const bool isTimed_ = TimingLog::isOn(LogType::dispatch) || TimingLog::isOn(LogType::tagCollection);
    TagList& tags_;
    std::u16string& target_;
    const std::size_t base_;                    // where this text begins in the target
    std::size_t position_ = 0;                  // how far the source is finished
    std::size_t finished_;                      // the end of the finished part in the target
    std::size_t scanFrom_;                      // where a marker may begin that nobody has seen yet
    std::unique_ptr<FinishedMarkers> markers_;  // once the finished part may hold one
    std::unique_ptr<PairIndex> pairs_;          // of the source, once a tag without ":" asked
    std::unique_ptr<Scratch> ownScratch_;
    Scratch* scratch_ = nullptr;
    std::size_t depth_ = 0;
    bool isFit_ = false;                           // no part of the source needs an escape
    const PairedText* pairedText_ = nullptr;       // while the rest goes the literal way ...
    const std::u16string* literalText_ = nullptr;  // ... and where even the pairs do not tell
};

// What ProcessValue does with a text: the text as a value of its own that shares the context. A
// limit that it meets is reported for the handler whose text it is.
std::u16string evaluateText(platform::Services& services, const ContextRef& context, std::u16string_view handler,
                            std::u16string text);

// Escapes and brackets tables for a text that is to stand in RTF; true when the text is itself a
// complete RTF document.
bool fitIntoRtf(platform::Services& services, bool protect, std::u16string& value);

// Fits a tag's new value into RTF where `protect` asks for it, and counts its characters. The limit
// that they go beyond, if they do: the value is empty then, and no memory was taken for its escapes.
std::optional<EvaluationLimit> fitAndCount(platform::Services& services, bool protect, std::u16string& value);

// Writes the limit's one entry of this run.
void reportLimit(platform::Services& services, const TagContext& context, EvaluationLimit limit,
                 std::u16string_view handler, std::u16string_view tagName);

}  // namespace velmor
