#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/Dispatch.h"
#include "core/EvaluationRun.h"
#include "core/MarkedText.h"
#include "core/TagList.h"
#include "core/TagListener.h"

namespace velmor {

// Replaces the tags of one text by their results.
//
// The rule: the tags are taken in order; of each, the literal text (markers, name with its final
// ":", without regard to case) is sought from the start of the text as it is by then, and failing
// that the same without the final ":". The first place found is replaced by the tag's result; a
// tag that is found nowhere is not evaluated. So a result may absorb a later tag's text, and "X"
// and "X:" may change places.
//
// The way: the result is written from left to right, each tag at its own place, as long as that is
// provably the first one found. Every place of a tag's literal text begins with an opening marker.
// While the finished part holds none, the first place cannot begin before the tag's own place, which
// is one of a name with its final ":". A name without one needs no marker ":</KV>" further on in
// addition: with one ends what is sought first. When the proof fails, MarkedText finds the places of
// the other tags, which costs more, but still takes time linear in the text (but for a logarithm).
class Evaluation {
public:
    // Appends to target. Both must last, and the list's text must not change meanwhile. `isApart`: see TagListener.
    Evaluation(TagList& tags, const BuilderRef& target, bool isApart = false);
    ~Evaluation();
    Evaluation(const Evaluation&) = delete;
    Evaluation& operator=(const Evaluation&) = delete;
    // `isFit`: no part of the text needs an escape.
    void run(bool isFit = false);

    // The text as far as it has come: what is finished, and the rest with its tags.
    std::u16string soFar() const;

private:
    void finishTo(std::size_t position);
    bool gapHasMarker(std::size_t gap) const;
    bool ownPlaceIsFirst(std::size_t index);

    // The results of the tags are appended to `results`.
    void answer(std::size_t index, const BuilderRef& results);
    void answerSafely(std::size_t index, const BuilderRef& results);
    void answerByObject(std::size_t index, privStrCat& results);
    void answerHere(std::size_t index, const BuilderRef& results);
    KeptListRef evaluateTagsOf(TagAnswer& answer, std::size_t index, const BuilderRef& results);
    void keepTag(std::size_t index, std::size_t start, privStrCat& results);
    void markEmptyTag(std::size_t start, privStrCat& results) const;
    void report(EvaluationLimit limit, std::size_t index);

    void runLiterally(std::size_t from);

    TagList& tags_;
    const EvaluationRules& rules_ = EvaluationRun::current().rules();
    TagListener* const listener_ = TagListener::current();
    const BuilderRef& target_;
    const std::size_t base_;    // where this text begins in the target
    std::size_t position_ = 0;  // how far the source is finished
    std::size_t finished_;      // the end of the finished part in the target
    std::size_t scanFrom_;      // where a marker may begin that nobody has seen yet
    bool finishedHasMarker_ = false;
    bool isFit_ = false;
    std::optional<std::size_t> lastSeparated_;  // the source's last marker that follows a ":", or 0
    const MarkedText* literal_ = nullptr;       // while the rest goes the literal way
};

// What ProcessValue does with a text: the text as a value of its own that shares the context. A
// limit that it meets is reported for the handler whose text it is. `isAnswer`: the result is searched for tags again,
// so what the rules keep as text stays hidden (see hideMarkers).
std::u16string evaluateText(platform::Services& services, const ContextRef& context, std::u16string_view handler,
                            std::u16string text, bool isAnswer = false);

}  // namespace velmor
