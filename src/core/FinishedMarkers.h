#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmor {

// Hash of a text, without regard to case, that can be taken of a part of a text in passing. Equal
// texts have equal hashes; unequal ones mostly not.
class RollingHash {
public:
    struct Mark {
        std::size_t position = 0;
        std::uint64_t hash = 0;
    };
    static std::uint64_t of(std::u16string_view text) noexcept;
    static std::uint64_t add(std::uint64_t hash, char16_t unit) noexcept;

    // The mark at a place not before the last one.
    Mark advance(std::u16string_view text, std::size_t position) noexcept;
    void restart(std::size_t position) noexcept { mark_ = {position, 0}; }
    // The hash of what lies between two marks.
    static std::uint64_t between(const Mark& start, const Mark& end) noexcept;

private:
    Mark mark_;
};

// The marker pairs of a text that grows at its end, as a set of hashes of what stands between
// them. An opening marker and an empty pair directly within it also count as a pair: "<KV:X<KV:</KV>"
// is the literal text of a tag that is written "<KV:X<KV</KV>".
class FinishedMarkers {
public:
    // Before `from` there is no marker.
    explicit FinishedMarkers(std::size_t from) noexcept : next_(from) { hash_.restart(from); }
    // Takes in the text up to its end, as far as markers are complete.
    void scan(std::u16string_view text);
    // True when a complete pair holds this name (and, mostly, only then).
    bool holds(std::uint64_t nameHash) const { return names_.contains(nameHash); }

private:
    std::size_t next_;
    RollingHash hash_;
    std::vector<RollingHash::Mark> unclosed_;
    std::unordered_set<std::uint64_t> names_;
};

// The pairs of a text, in the same sense, whose name ends in ":", by hash of the name.
class PairIndex {
public:
    explicit PairIndex(std::u16string_view text);
    // True when such a pair begins behind `position` (and, mostly, only then).
    bool standsBehind(std::uint64_t nameHash, std::size_t position) const;
    bool isEmpty() const noexcept { return lastPlace_.empty(); }

private:
    void add(const RollingHash::Mark& start, const RollingHash::Mark& end);

    std::unordered_map<std::uint64_t, std::size_t> lastPlace_;
};

}  // namespace velmor
