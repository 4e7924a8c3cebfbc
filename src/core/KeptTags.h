#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// Where a tag's result lies in its parent's result.
struct ResultPlace {
    static constexpr std::uint32_t kNotEvaluated = 0xFFFFFFFF;

    std::uint32_t start = kNotEvaluated;
    std::uint32_t length = 0;
};

// The values of tags within which tags were evaluated, for a reader who may ask for one. Records only
// come, never go. A value that is part of its parent's text is kept as a place in that.
class KeptTags {
public:
    // In characters; what belongs to them takes the room of so many.
    static constexpr std::size_t kMost = std::size_t{1} << 25;

    using Index = std::uint32_t;  // of a record
    struct Nested {
        std::uint32_t tag = 0;  // its index in its list
        Index record = 0;
    };
    struct Record {
        std::u16string_view value;
        std::vector<ResultPlace> places;
        std::vector<Nested> nested;
    };

    // Nothing is kept, and false returned, beyond the limit or when there is no memory.
    bool add(std::u16string_view value, std::u16string_view parent, const std::vector<ResultPlace>& places,
             const std::vector<Nested>& nested, Index& record) noexcept;
    // The views last as long as the collection and the parent's text.
    Record read(Index record, std::u16string_view parent) const;

private:
    static constexpr std::size_t kBlock = 32768;

    struct Entry {
        const char16_t* text = nullptr;  // null: in the parent's
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
        std::size_t firstPlace = 0;
        std::size_t firstNested = 0;
        std::uint32_t places = 0;
        std::uint32_t nested = 0;
    };

    const char16_t* store(std::u16string_view text);

    std::deque<std::u16string> blocks_;  // a block never grows, so what lies in it keeps its place
    std::deque<Entry> entries_;
    std::deque<ResultPlace> places_;
    std::deque<Nested> nested_;
    std::size_t size_ = 0;
};

}  // namespace velmor
