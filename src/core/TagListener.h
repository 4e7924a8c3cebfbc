#pragma once

#include <cstddef>
#include <string_view>

#include "common/PlaceShift.h"
#include "core/TagContext.h"

namespace velmor {

// A tag that is about to be answered. The view lasts for the call.
struct HeardTag {
    std::u16string_view name;  // as it is written between its markers
    Origin origin = Origin::author;
    // In the text that holds it: its number among the top-level tags and the position of its opening marker, both from
    // 1. 0 for a tag that no text holds: a handler evaluates it by itself.
    std::size_t index = 0;
    std::size_t position = 0;
};

// Hears of every tag that this thread evaluates while the listener lives: tags and texts within one another, as they
// begin and end. Origins are tracked meanwhile. The listener made last hears alone. Without one, evaluation pays for
// the test of a pointer.
//
// A text is written to a builder from `start` on, and the results of its tags to the same builder. The result of a text
// is that of the tag that was being answered when the text began, or that of the outermost text.
class TagListener {
public:
    TagListener() noexcept : before_(current_) { current_ = this; }
    virtual ~TagListener() { current_ = before_; }
    TagListener(const TagListener&) = delete;
    TagListener& operator=(const TagListener&) = delete;

    static TagListener* current() noexcept { return current_; }

    virtual void tagBegins(const HeardTag& tag) noexcept = 0;
    // Where its result begins, 0-based, and the result, which lasts for the call. An exception may skip the call; the
    // end of the text around the tag is always told.
    virtual void tagEnds(std::size_t start, std::u16string_view result) noexcept = 0;

    // `isApart`: a handler or a command uses the result as a value; it is no part of the tag's result.
    virtual void textBegins(std::size_t start, bool isApart) noexcept = 0;
    // The results of all tags of this text, those that ended and those that follow, do not stay at their places.
    virtual void textMoves() noexcept = 0;
    virtual void textEnds(std::size_t length) noexcept = 0;
    // The outermost text has ended, and empty paragraphs were removed from it.
    virtual void resultMoves(PlaceShifts shifts) noexcept = 0;

private:
    static constinit inline thread_local TagListener* current_ = nullptr;

    TagListener* const before_;
};

}  // namespace velmor
