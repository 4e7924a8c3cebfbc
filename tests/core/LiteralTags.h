#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The described procedures, step by step over flat strings: slow and obvious. The fast engine is
// held against them.
namespace velmor::literal {

// 1-based positions, 0 when there is none; without regard to case.
std::size_t findPlace(const std::u16string& text, std::u16string_view sought, std::size_t start);

// The position of the closing marker that belongs to the opening marker one before `start`.
std::size_t findTagEnd(const std::u16string& text, std::size_t start);

struct Tag {
    std::size_t open;   // of the opening marker
    std::size_t close;  // of the closing marker
    bool operator==(const Tag&) const = default;
};
std::vector<Tag> topLevelTags(const std::u16string& text);

// A tag's name, with the ":" that a stored name always ends in.
std::u16string storedName(const std::u16string& text, const Tag& tag);

// Answers one tag by its stored name: the tag's value as it is inserted, not yet scanned for tags.
// `protect` is the parent's protection on entry and the tag's own on return.
using Answer = std::function<std::u16string(const std::u16string& name, bool& protect)>;

// The evaluation loop. `answer` is asked in the loop's order.
std::u16string evaluate(const std::u16string& value, bool protect, const Answer& answer);

}  // namespace velmor::literal
