#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/TagListener.h"

namespace velmor {

// "template", "include", "property" or "handler".
std::string_view originText(Origin origin) noexcept;

// The handler and the command that the beginning of a tag's name gives: "FORMAT>DATE" of "FORMAT>DATE:PROPERTY=Due:".
std::u16string_view commandPart(std::u16string_view name) noexcept;
// Both in upper case, of a name or its beginning; empty where it gives none.
std::pair<std::u16string, std::u16string> handlerAndCommand(std::u16string_view name);

// Keeps what a TagListener hears of one evaluation: the first tags in the order in which they begin.
class TraceCollector : public TagListener {
public:
    static constexpr std::uint32_t noTag = 0xFFFFFFFF;
    static constexpr std::size_t npos = std::u16string_view::npos;

    struct Limits {
        std::size_t tags = 1'000'000;
        std::size_t ofName = 60;  // characters of a tag's name that are kept
    };
    // 0-based places and indices.
    struct Text {
        std::uint32_t tag = noTag;  // whose answer evaluates the text; none: the outermost text
        std::uint32_t start = 0;    // in the builder
        std::uint32_t length = 0;
        bool isApart = false;
        bool hasMoved = false;
    };
    struct Tag {
        std::uint32_t text = 0;  // that holds it; noTag: one that a handler evaluates by itself
        std::uint32_t parent = noTag;
        std::uint32_t index = 0;     // HeardTag's
        std::uint32_t position = 0;  // HeardTag's
        std::uint32_t start = 0;     // in the builder
        std::uint32_t length = 0;
        std::uint32_t nameStart = 0;
        std::uint32_t nameLength = 0;  // that is kept
        std::uint32_t nested = noTag;  // the text whose result is the tag's
        Origin origin = Origin::author;
        std::chrono::nanoseconds time{0};  // while it is answered, the time when it began
    };

    // 0-based.
    struct Place {
        std::size_t start = npos;  // npos: unknown, or nowhere
        std::size_t length = 0;
    };

    TraceCollector() : TraceCollector(Limits()) {}
    explicit TraceCollector(const Limits& limits);

    void tagBegins(const HeardTag& tag) noexcept override;
    void tagEnds(std::size_t start, std::u16string_view result) noexcept override;
    void textBegins(std::size_t start, bool isApart) noexcept override;
    void textMoves() noexcept override;
    void textEnds(std::size_t length) noexcept override;
    void resultMoves(PlaceShifts shifts) noexcept override { shifts_ = std::move(shifts); }

    const std::vector<Tag>& tags() const noexcept { return tags_; }
    const std::vector<Text>& texts() const noexcept { return texts_; }
    std::u16string_view nameOf(const Tag& tag) const noexcept {
        return std::u16string_view(names_).substr(tag.nameStart, tag.nameLength);
    }
    // Each tag's result in that of the outermost text. Costs the logarithm of the number of removed paragraphs for
    // each.
    std::vector<Place> places() const;
    // Whether the results of the tags within its result are not where they were written.
    bool hasMoved(const Tag& tag) const;
    // Tags beyond the limit, or beyond the memory.
    std::size_t omitted() const noexcept { return omitted_; }

protected:
    // The index of the tag that is being answered; noTag if there is none or it is not kept.
    std::uint32_t answering() const noexcept {
        return open_.empty() || !open_.back().isTag ? noTag : open_.back().index;
    }

private:
    // A tag or a text that has begun.
    struct Open {
        std::uint32_t index;  // noTag: it is not kept
        bool isTag;
    };

    static constexpr std::size_t mostOpen = 1024;  // far more than levels of evaluation

    std::uint32_t add(const HeardTag& tag);
    std::uint32_t addText(std::size_t start, bool isApart);
    std::size_t writtenStart(const Tag& tag, const std::vector<std::size_t>& parents) const;

    const Limits limits_;
    std::vector<Tag> tags_;
    std::vector<Text> texts_;
    std::u16string names_;
    std::vector<Open> open_;
    PlaceShifts shifts_;  // since the results were written
    std::size_t omitted_ = 0;
};

}  // namespace velmor
