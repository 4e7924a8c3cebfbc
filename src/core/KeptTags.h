#pragma once

#include <cstdint>
#include <memory>
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

// What tags became whose values hold tags of their own, packed into few large blocks: millions of
// them are kept for a reader who may ask for one. Records only come, never go.
class KeptTags {
public:
    // Beyond so many characters nothing more is kept: such a tag shows its result as its value.
    static constexpr std::size_t kMost = std::size_t{1} << 26;

    using Address = std::uint64_t;
    struct Nested {
        std::uint32_t index = 0;  // of the tag in its list
        Address address = 0;
    };
    // One value and its tags. The views last as long as the collection.
    struct Record {
        std::u16string_view value;
        std::vector<ResultPlace> places;
        std::vector<Nested> nested;
    };

    bool isFull() const noexcept { return size_ > kMost; }
    Address add(std::u16string_view value, const std::vector<ResultPlace>& places, const std::vector<Nested>& nested);
    Record read(Address address) const;

private:
    static constexpr std::size_t kBlock = 32768;

    std::vector<std::u16string> blocks_;
    std::size_t size_ = 0;
};

}  // namespace velmor
