#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// A text in which tags are sought by their literal text from the start and replaced, over and over,
// at a cost that does not grow with the text.
//
// The text is a list of its markers, each with the text that follows it. A tag's literal text ends
// with a marker, and its name begins after the innermost opening marker that is not closed by then.
// So each marker that may end a literal text is indexed by a hash of what lies between. An edit
// changes that of the markers close by alone: what lies between may hold up to mostWithin markers.
// The few names that hold more are sought in the plain text.
class MarkedText {
public:
    static constexpr std::size_t mostWithin = 250;

    explicit MarkedText(std::u16string_view text);
    MarkedText(const MarkedText&) = delete;
    MarkedText& operator=(const MarkedText&) = delete;

    // A literal text, by its first and its last marker. Valid until it is replaced.
    struct Place {
        std::uint32_t first;
        std::uint32_t last;
    };
    // The first "<KV:" name "</KV>", without regard to case. The name is that of a tag, with or
    // without its final ":".
    std::optional<Place> find(std::u16string_view name) const;
    void replace(Place place, std::u16string_view result);

    std::u16string text() const;

private:
    using Node = std::uint32_t;
    static constexpr Node noNode = 0xFFFFFFFF;

    // Hash of a text without regard to case, which can be joined and cut.
    struct Hash {
        std::uint64_t sum = 0;
        std::uint64_t power = 1;  // of the base, by the length

        static Hash of(std::u16string_view text) noexcept;
        Hash& operator+=(const Hash& next) noexcept;
        Hash without(const Hash& start) const noexcept;  // which it begins with
        Hash withoutEnd(const Hash& end) const noexcept;
    };
    // Text without markers, in pieces that lie in texts_.
    struct Run {
        std::list<std::u16string_view> pieces;
        Hash hash;

        explicit Run(std::u16string_view text = {});
        void append(Run&& next);
        std::u16string firstUnits() const;
        std::u16string lastUnits() const;
        void dropFirst(std::size_t count);
        void dropLast(std::size_t count);
    };
    // A marker, as it is written, and what follows it. The first node has no marker.
    struct Marker {
        std::u16string_view marker;
        Run run;
        Node before = noNode;
        Node after = noNode;
        std::uint64_t order = 0;  // ascends along the text
        // Of a marker that may end a literal text:
        Node opener = noNode;  // its first marker; none for any other
        std::uint64_t key = 0;
    };
    struct ByKeyAndOrder {
        using is_transparent = void;
        const MarkedText* text;
        bool operator()(Node left, Node right) const noexcept;
        bool operator()(Node node, std::uint64_t key) const noexcept;
    };
    // Markers that are not closed yet, in a sweep over the nodes.
    struct Unclosed {
        Node node;
        std::size_t index;
        Hash hash;  // of what the sweep has met up to the marker's end
    };
    class Sweep;

    bool isOpening(Node node) const noexcept;
    bool isClosing(Node node) const noexcept;
    // An opening marker with its closing one right after it. It ends a literal text whose name would
    // be complete without it: "<KV:x<KV:</KV>" is the literal text of "<KV:x<KV</KV>".
    bool isEmptyPair(Node node) const noexcept;
    static std::uint64_t keyOf(const Hash& hash, bool isEmptyPair) noexcept;

    Node insertAfter(Node node, std::u16string_view marker);
    void makeRoomAfter(Node node);
    bool spread(Node node, int bits);
    Node join(Node node, Run&& run);
    Node append(Node node, std::u16string_view text);
    // The nodes whose text between the markers an edit changes.
    struct Reach {
        Node last;
        std::size_t outer;  // how many opening markers before the edit they go back to
    };
    Reach reachOf(Node changed, Node lastChanged) const;
    Node firstToSweep(Node changed, std::size_t outer) const;
    void indexAround(Node changed, Node lastChanged);
    void index(Node node, Node opener, std::uint64_t key);
    void unindex(Node node);
    bool holds(Node opener, Node end, std::u16string_view name) const;
    std::optional<Place> findPlainly(std::u16string_view name) const;

    std::deque<std::u16string> texts_;
    std::vector<Marker> nodes_;
    std::set<Node, ByKeyAndOrder> index_;
};

}  // namespace velmor
