#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velmor {

// A text in which tags are sought by their literal text from the start and replaced, over and over,
// at a cost that does not grow with the text: the first place of a text that is itself a pair of
// markers can only be a complete pair of the whole, so an index of the pairs by the hash of what
// stands between their markers finds it. Nothing moves until the end: what replaces a pair is kept
// beside it, pairs within it join the index, and the pairs around it are taken out and put in
// again under their new text.
//
// Not every text can be kept so: a marker may form across an edge of what is replaced, or what is put
// in may close a pair around it. Then `isProven` turns false, for good, and `assemble` gives the text
// up to there.
class PairedText {
public:
    explicit PairedText(std::u16string text);

    bool isProven() const noexcept { return proven_; }
    // False when no empty pair of markers follows an opening marker that is not closed before it.
    bool mayHoldEmptyPair() const noexcept { return hasEmptyPair_; }

    // The first place of "<KV:" name "</KV>", without regard to case. The name must hold complete
    // pairs only, if any. A place stays valid until it is replaced.
    using Place = std::uint32_t;
    std::optional<Place> find(std::u16string_view name);
    void replace(Place place, std::u16string result);

    std::u16string assemble() const;

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // The text itself (piece 0), or what replaced a pair.
    struct Piece {
        std::u16string text;
        std::uint32_t owner = kNone;  // the pair that it replaced
        std::uint32_t depth = 0;
        std::uint32_t firstPair = 0;  // its pairs, in order of opening
        std::uint32_t endPair = 0;
        std::uint32_t firstClosed = 0;  // those of closed_ that lie in it
        std::uint32_t endClosed = 0;
    };
    struct Pair {
        std::uint32_t piece = 0;
        std::uint32_t open = 0;
        std::uint32_t close = kNone;   // none: never closed
        std::uint32_t parent = kNone;  // the complete pair around it in the same piece
        std::uint32_t replacement = kNone;
        std::uint64_t hash = 0;
    };
    // Pairs of one hash, in order of place; the first ones may be gone.
    struct Bucket {
        std::vector<std::uint32_t> pairs;
        std::size_t first = 0;
    };
    struct Strays {
        bool openings = false;
        std::uint32_t lastClosing = kNone;
    };

    Strays addPairs(std::uint32_t piece);
    // A place between two units of a piece.
    struct Cursor {
        std::uint32_t piece;
        std::size_t position;
    };
    bool formsMarker(Place place, std::u16string_view result) const;
    // The units next to the place as the text is now, nearest first; nothing when they are too far away.
    std::optional<std::u16string> unitsBefore(Cursor at) const;
    std::optional<std::u16string> unitsAfter(Cursor at) const;
    std::uint32_t replacementThatEnds(const Cursor& at) const;
    std::uint32_t replacementThatBegins(const Cursor& at) const;
    bool isGone(std::uint32_t pair) const;
    std::uint32_t around(std::uint32_t pair) const;  // the complete pair around it, in its piece or beyond
    bool isBefore(std::uint32_t left, std::uint32_t right) const;
    void addToIndex(std::uint32_t pair);
    void refresh(std::uint32_t pair);
    std::u16string inner(std::uint32_t pair) const;
    void assemble(std::uint32_t piece, std::size_t start, std::size_t end, std::u16string& target) const;
    std::size_t pairsFrom(const Piece& piece, std::size_t start) const;

    std::vector<Piece> pieces_;
    std::vector<Pair> pairs_;
    std::vector<std::uint32_t> closed_;  // complete pairs, those of a piece in order of closing
    std::unordered_map<std::uint64_t, Bucket> index_;
    std::uint32_t lastStrayClosing_ = kNone;  // of piece 0
    std::size_t budget_;                      // of characters for pairs whose text changed
    bool proven_ = true;
    bool hasEmptyPair_ = false;
    bool hasOutermostEmptyPair_ = false;  // with no opening marker around it
};

}  // namespace velmor
