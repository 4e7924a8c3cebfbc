#include "core/MarkedText.h"

#include <algorithm>
#include <utility>

#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::uint64_t hashBase = 0x9E3779B97F4A7C15;
constexpr std::size_t markerReach = closingMarker.size() - 1;  // of an incomplete marker

constexpr std::uint64_t inverseOf(std::uint64_t odd) noexcept {
    std::uint64_t inverse = odd;
    for (int step = 0; step < 5; ++step) inverse *= 2 - odd * inverse;
    return inverse;
}

std::size_t countMarkers(std::u16string_view text) noexcept {
    std::size_t count = 0;
    for (MarkerPlace at = findMarker(text, 0); at.position < text.size(); at = findMarker(text, at.position + 1)) {
        ++count;
    }
    return count;
}

}  // namespace

// --- hashes ---

MarkedText::Hash MarkedText::Hash::of(std::u16string_view text) noexcept {
    Hash hash;
    // One more than the unit, so that leading zeros count.
    for (const char16_t unit : text) hash += {foldUnit(unit) + std::uint64_t{1}, hashBase};
    return hash;
}

MarkedText::Hash& MarkedText::Hash::operator+=(const Hash& next) noexcept {
    sum = sum * next.power + next.sum;
    power *= next.power;
    return *this;
}

MarkedText::Hash MarkedText::Hash::without(const Hash& start) const noexcept {
    const std::uint64_t rest = power * inverseOf(start.power);
    return {sum - start.sum * rest, rest};
}

MarkedText::Hash MarkedText::Hash::withoutEnd(const Hash& end) const noexcept {
    const std::uint64_t inverse = inverseOf(end.power);
    return {(sum - end.sum) * inverse, power * inverse};
}

std::uint64_t MarkedText::keyOf(const Hash& hash, bool isEmptyPair) noexcept {
    return hash.sum ^ (isEmptyPair ? hashBase : 0);
}

// --- text between markers ---

MarkedText::Run::Run(std::u16string_view text) : hash(Hash::of(text)) {
    if (!text.empty()) pieces.push_back(text);
}

void MarkedText::Run::append(Run&& next) {
    pieces.splice(pieces.end(), next.pieces);
    hash += next.hash;
}

std::u16string MarkedText::Run::firstUnits() const {
    std::u16string units;
    for (auto piece = pieces.begin(); piece != pieces.end() && units.size() < markerReach; ++piece) {
        units += piece->substr(0, markerReach - units.size());
    }
    return units;
}

std::u16string MarkedText::Run::lastUnits() const {
    std::u16string units;
    for (auto piece = pieces.rbegin(); piece != pieces.rend() && units.size() < markerReach; ++piece) {
        const std::size_t count = std::min(markerReach - units.size(), piece->size());
        units.insert(0, piece->substr(piece->size() - count));
    }
    return units;
}

void MarkedText::Run::dropFirst(std::size_t count) {
    for (; count > 0; --count) {
        hash = hash.without(Hash::of(pieces.front().substr(0, 1)));
        pieces.front().remove_prefix(1);
        if (pieces.front().empty()) pieces.pop_front();
    }
}

void MarkedText::Run::dropLast(std::size_t count) {
    for (; count > 0; --count) {
        hash = hash.withoutEnd(Hash::of(pieces.back().substr(pieces.back().size() - 1)));
        pieces.back().remove_suffix(1);
        if (pieces.back().empty()) pieces.pop_back();
    }
}

// --- the list of markers ---

MarkedText::MarkedText(std::u16string_view text) : nodes_(1), index_(ByKeyAndOrder{this}) {
    texts_.emplace_back(text);
    indexAround(0, append(0, texts_.back()));
}

bool MarkedText::isOpening(Node node) const noexcept {
    return nodes_[node].marker.size() == openingMarker.size();
}

bool MarkedText::isClosing(Node node) const noexcept {
    return nodes_[node].marker.size() == closingMarker.size();
}

bool MarkedText::isEmptyPair(Node node) const noexcept {
    const Marker& at = nodes_[node];
    return isOpening(node) && at.run.pieces.empty() && at.after != noNode && isClosing(at.after);
}

MarkedText::Node MarkedText::insertAfter(Node node, std::u16string_view marker) {
    constexpr std::uint64_t usualStep = std::uint64_t{1} << 32;
    const auto made = static_cast<Node>(nodes_.size());
    nodes_.emplace_back();
    makeRoomAfter(node);
    const Node after = std::exchange(nodes_[node].after, made);
    const std::uint64_t order = nodes_[node].order;
    nodes_[made].marker = marker;
    nodes_[made].before = node;
    nodes_[made].after = after;
    nodes_[made].order = after == noNode ? order + usualStep : order + (nodes_[after].order - order) / 2;
    if (after != noNode) nodes_[after].before = made;
    return made;
}

void MarkedText::makeRoomAfter(Node node) {
    const Node after = nodes_[node].after;
    if (after == noNode || nodes_[after].order - nodes_[node].order > 1) return;
    for (int bits = 8; !spread(node, bits); bits += 4) {
    }
}

// Spreads the nodes whose order differs from the node's in its last bits alone; false when they
// are too many for that to last.
bool MarkedText::spread(Node node, int bits) {
    const std::uint64_t room = std::uint64_t{1} << bits;
    const std::uint64_t lowest = nodes_[node].order & ~(room - 1);
    Node first = node;
    while (nodes_[first].before != noNode && nodes_[nodes_[first].before].order >= lowest) first = nodes_[first].before;
    std::uint64_t count = 1;
    for (Node at = first; nodes_[at].after != noNode && nodes_[nodes_[at].after].order < lowest + room; ++count) {
        at = nodes_[at].after;
    }
    if (count * count > room) return false;
    for (std::uint64_t i = 0; i < count; ++i, first = nodes_[first].after) {
        nodes_[first].order = lowest + room / count * i;
    }
    return true;
}

// Adds text at the end of a node's; where both form a marker, that begins a node. Gives the node that
// the text ends in.
MarkedText::Node MarkedText::join(Node node, Run&& run) {
    const std::u16string left = nodes_[node].run.lastUnits();
    const std::u16string both = left + run.firstUnits();
    const MarkerPlace place = findMarker(both, 0);
    if (place.position >= left.size()) {
        nodes_[node].run.append(std::move(run));
        return node;
    }
    const std::size_t length = (place.opening ? openingMarker : closingMarker).size();
    nodes_[node].run.dropLast(left.size() - place.position);
    run.dropFirst(place.position + length - left.size());
    const Node made = insertAfter(node, texts_.emplace_back(both, place.position, length));
    nodes_[made].run = std::move(run);
    return made;
}

// The text must last.
MarkedText::Node MarkedText::append(Node node, std::u16string_view text) {
    for (std::size_t at = 0;;) {
        const MarkerPlace place = findMarker(text, at);
        node = join(node, Run(text.substr(at, place.position - at)));
        if (place.position >= text.size()) return node;
        const std::size_t length = (place.opening ? openingMarker : closingMarker).size();
        node = insertAfter(node, text.substr(place.position, length));
        at = place.position + length;
    }
}

void MarkedText::replace(Place place, std::u16string_view result) {
    const Node before = nodes_[place.first].before;
    const Node after = nodes_[place.last].after;
    Run tail = std::move(nodes_[place.last].run);
    for (Node node = place.first; node != after; node = nodes_[node].after) {
        unindex(node);
        nodes_[node].run.pieces.clear();
    }
    nodes_[before].after = after;
    if (after != noNode) nodes_[after].before = before;
    const Node last = append(before, texts_.emplace_back(result));
    indexAround(before, join(last, std::move(tail)));
}

std::u16string MarkedText::text() const {
    std::u16string text;
    for (Node node = 0; node != noNode; node = nodes_[node].after) {
        text += nodes_[node].marker;
        for (const std::u16string_view piece : nodes_[node].run.pieces) text += piece;
    }
    return text;
}

// --- the index ---

bool MarkedText::ByKeyAndOrder::operator()(Node left, Node right) const noexcept {
    const Marker &a = text->nodes_[left], &b = text->nodes_[right];
    return a.key != b.key ? a.key < b.key : a.order < b.order;
}

bool MarkedText::ByKeyAndOrder::operator()(Node node, std::uint64_t key) const noexcept {
    return text->nodes_[node].key < key;
}

void MarkedText::index(Node node, Node opener, std::uint64_t key) {
    if (nodes_[node].opener != noNode && nodes_[node].key == key) {
        nodes_[node].opener = opener;
        return;
    }
    unindex(node);
    nodes_[node].opener = opener;
    nodes_[node].key = key;
    index_.insert(node);
}

void MarkedText::unindex(Node node) {
    if (nodes_[node].opener == noNode) return;
    index_.erase(node);
    nodes_[node].opener = noNode;
}

// Goes over the nodes from an opening marker on, and indexes those anew that follow the changed place:
// the text between their first marker and them may be another one.
class MarkedText::Sweep {
public:
    Sweep(MarkedText& text, Node changed) : text_(text), changed_(changed) {}

    void take(Node node) {
        if (text_.isClosing(node)) {
            if (isChanged_) indexAs(node, true);
            if (!unclosed_.empty()) unclosed_.pop_back();
            met_ += closingHash;
        }
        isChanged_ |= node == changed_;  // whether it begins an empty pair, too
        if (text_.isOpening(node)) {
            if (isChanged_) indexAs(node, text_.isEmptyPair(node));
            met_ += openingHash;
            unclosed_.push_back({node, count_, met_});
        }
        met_ += text_.nodes_[node].run.hash;
        ++count_;
    }

private:
    inline static const Hash openingHash = Hash::of(openingMarker);
    inline static const Hash closingHash = Hash::of(closingMarker);

    void indexAs(Node node, bool endsText) {
        if (!endsText || unclosed_.empty() || count_ - unclosed_.back().index > mostWithin + 1) {
            text_.unindex(node);
            return;
        }
        const Unclosed& begin = unclosed_.back();
        text_.index(node, begin.node, keyOf(met_.without(begin.hash), text_.isOpening(node)));
    }

    MarkedText& text_;
    const Node changed_;
    bool isChanged_ = false;
    Hash met_;
    std::vector<Unclosed> unclosed_;
    std::size_t count_ = 0;
};

// What follows `changed` is new up to `lastChanged`.
MarkedText::Reach MarkedText::reachOf(Node changed, Node lastChanged) const {
    Reach reach{changed, 0};
    std::vector<bool> unclosed;  // whether something after the marker is new
    std::size_t closed = 0;
    bool isNew = true;
    std::size_t steps = 0;
    for (Node node = changed; node != noNode && steps <= mostWithin + 1; node = nodes_[node].after) {
        const bool closes = isClosing(node) && node != changed;
        if ((closes || isEmptyPair(node)) && (unclosed.empty() || unclosed.back())) {
            reach.last = node;
            if (unclosed.empty()) reach.outer = closed + 1;
        }
        if (closes && unclosed.empty()) {
            ++closed;
        } else if (closes) {
            unclosed.pop_back();
        }
        if (isOpening(node)) unclosed.push_back(isNew);
        isNew = isNew && node != lastChanged;
        steps += isNew ? 0 : 1;
    }
    return reach;
}

// That one of the opening markers before the node that are not closed before it, if it is near enough;
// else the last that is.
MarkedText::Node MarkedText::firstToSweep(Node changed, std::size_t outer) const {
    Node first = changed;
    std::size_t closed = isClosing(changed) ? 1 : 0;
    Node node = nodes_[changed].before;
    for (std::size_t steps = 0; outer > 0 && node != noNode && steps <= mostWithin; ++steps) {
        if (isClosing(node)) {
            ++closed;
        } else if (closed > 0) {
            --closed;
        } else if (isOpening(node)) {
            first = node;
            --outer;
        }
        node = nodes_[node].before;
    }
    return first;
}

void MarkedText::indexAround(Node changed, Node lastChanged) {
    const Reach reach = reachOf(changed, lastChanged);
    Sweep sweep(*this, changed);
    for (Node node = firstToSweep(changed, reach.outer);; node = nodes_[node].after) {
        sweep.take(node);
        if (node == reach.last) return;
    }
}

// --- finding ---

std::optional<MarkedText::Place> MarkedText::find(std::u16string_view name) const {
    const bool endsOpen = name.size() >= openingMarker.size() &&
                          equalIgnoringCase(name.substr(name.size() - openingMarker.size()), openingMarker);
    const std::u16string_view between = endsOpen ? name.substr(0, name.size() - openingMarker.size()) : name;
    if (countMarkers(between) > mostWithin) return findPlainly(name);
    // Not equal_range, which takes time linear in the number of equal keys.
    const std::uint64_t key = keyOf(Hash::of(between), endsOpen);
    for (auto node = index_.lower_bound(key); node != index_.end() && nodes_[*node].key == key; ++node) {
        if (isOpening(*node) == endsOpen && holds(nodes_[*node].opener, *node, between)) {
            return Place{nodes_[*node].opener, endsOpen ? nodes_[*node].after : *node};
        }
    }
    return std::nullopt;
}

bool MarkedText::holds(Node opener, Node end, std::u16string_view name) const {
    const auto take = [&](std::u16string_view part) {
        if (!equalIgnoringCase(name.substr(0, part.size()), part)) return false;
        name.remove_prefix(part.size());
        return true;
    };
    for (Node node = opener; node != end; node = nodes_[node].after) {
        if (node != opener && !take(nodes_[node].marker)) return false;
        for (const std::u16string_view piece : nodes_[node].run.pieces) {
            if (!take(piece)) return false;
        }
    }
    return name.empty();
}

std::optional<MarkedText::Place> MarkedText::findPlainly(std::u16string_view name) const {
    std::u16string sought(openingMarker);
    sought.append(name).append(closingMarker);
    const std::size_t position = findText(text(), sought, 0, Comparison::text);
    if (position == std::u16string::npos) return std::nullopt;
    Place place{noNode, noNode};
    std::size_t at = 0;
    for (Node node = 0; at < position + sought.size(); node = nodes_[node].after) {
        if (at == position && node != 0) place.first = node;
        place.last = node;
        at += nodes_[node].marker.size();
        if (at == position + sought.size()) return place;
        for (const std::u16string_view piece : nodes_[node].run.pieces) at += piece.size();
    }
    return std::nullopt;
}

}  // namespace velmor
