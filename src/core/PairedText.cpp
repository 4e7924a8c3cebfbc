#include "core/PairedText.h"

#include <algorithm>

#include "core/FinishedMarkers.h"
#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {

namespace {

// Of results within results; each is a level of recursion.
constexpr std::uint32_t kMostNested = 300;
constexpr std::size_t kReach = kClosingMarker.size() - 1;
constexpr int kFarthest = 4096;  // steps to the units next to a place

// True when a marker begins before the edge and ends after it.
bool crosses(std::u16string_view text, std::size_t edge) noexcept {
    for (MarkerPlace place = findMarker(text, 0); place.position < edge; place = findMarker(text, place.position + 1)) {
        if (place.position + (place.opening ? kOpeningMarker : kClosingMarker).size() > edge) return true;
    }
    return false;
}

}  // namespace

PairedText::PairedText(std::u16string text) : budget_(16 * text.size() + 1000000) {
    pieces_.push_back({std::move(text)});
    lastStrayClosing_ = addPairs(0).lastClosing;
}

// --- what forms across an edge ---

std::uint32_t PairedText::replacementThatEnds(const Cursor& at) const {
    const Piece& piece = pieces_[at.piece];
    if (piece.text[at.position - 1] != kClosingMarker.back()) return kNone;
    const auto first = closed_.begin() + piece.firstClosed;
    const auto end = closed_.begin() + piece.endClosed;
    const auto closesBefore = [this](std::uint32_t pair, std::size_t position) {
        return pairs_[pair].close + kClosingMarker.size() < position;
    };
    const auto found = std::lower_bound(first, end, at.position, closesBefore);
    if (found == end || pairs_[*found].close + kClosingMarker.size() != at.position) return kNone;
    return pairs_[*found].replacement;
}

std::uint32_t PairedText::replacementThatBegins(const Cursor& at) const {
    if (pieces_[at.piece].text[at.position] != kOpeningMarker.front()) return kNone;
    const std::size_t pair = pairsFrom(pieces_[at.piece], at.position);
    const bool isThere = pair < pieces_[at.piece].endPair && pairs_[pair].open == at.position;
    return isThere ? pairs_[pair].replacement : kNone;
}

std::optional<std::u16string> PairedText::unitsBefore(Cursor at) const {
    std::u16string units;
    for (int step = 0; step < kFarthest; ++step) {
        const Piece& piece = pieces_[at.piece];
        const bool atStart = at.position == 0;
        if (units.size() == kReach || (atStart && piece.owner == kNone)) return units;
        if (atStart) {
            at = {pairs_[piece.owner].piece, pairs_[piece.owner].open};
        } else if (const std::uint32_t inner = replacementThatEnds(at); inner != kNone) {
            at = {inner, pieces_[inner].text.size()};
        } else {
            units += piece.text[--at.position];
        }
    }
    return std::nullopt;
}

std::optional<std::u16string> PairedText::unitsAfter(Cursor at) const {
    std::u16string units;
    for (int step = 0; step < kFarthest; ++step) {
        const Piece& piece = pieces_[at.piece];
        const bool atEnd = at.position == piece.text.size();
        if (units.size() == kReach || (atEnd && piece.owner == kNone)) return units;
        if (atEnd) {
            at = {pairs_[piece.owner].piece, pairs_[piece.owner].close + kClosingMarker.size()};
        } else if (const std::uint32_t inner = replacementThatBegins(at); inner != kNone) {
            at = {inner, 0};
        } else {
            units += piece.text[at.position++];
        }
    }
    return std::nullopt;
}

// Also true when that is too much to find out.
bool PairedText::formsMarker(Place place, std::u16string_view result) const {
    const Pair& pair = pairs_[place];
    std::optional<std::u16string> before = unitsBefore({pair.piece, pair.open});
    const std::optional<std::u16string> after = unitsAfter({pair.piece, pair.close + kClosingMarker.size()});
    if (!before || !after) return true;
    std::reverse(before->begin(), before->end());
    const std::size_t start = before->size();
    if (result.size() <= 2 * kReach) {
        const std::u16string whole = *before + std::u16string(result) + *after;
        return crosses(whole, start) || crosses(whole, start + result.size());
    }
    return crosses(*before + std::u16string(result.substr(0, kReach)), start) ||
           crosses(std::u16string(result.substr(result.size() - kReach)) + *after, kReach);
}

// --- pairs ---

PairedText::Strays PairedText::addPairs(std::uint32_t piece) {
    Strays strays;
    const std::u16string& text = pieces_[piece].text;
    pieces_[piece].firstPair = static_cast<std::uint32_t>(pairs_.size());
    pieces_[piece].firstClosed = static_cast<std::uint32_t>(closed_.size());
    RollingHash hash;
    struct Open {
        std::uint32_t pair;
        RollingHash::Mark mark;
    };
    std::vector<Open> unclosed;
    for (MarkerPlace place = findMarker(text, 0); place.position < text.size();
         place = findMarker(text, place.position + 1)) {
        const auto position = static_cast<std::uint32_t>(place.position);
        if (place.opening) {
            const std::size_t name = position + kOpeningMarker.size();
            if (unclosed.empty()) hash.restart(name);
            const std::uint32_t parent = unclosed.empty() ? kNone : unclosed.back().pair;
            unclosed.push_back({static_cast<std::uint32_t>(pairs_.size()), hash.advance(text, name)});
            pairs_.push_back({piece, position, kNone, parent, kNone, 0});
        } else if (unclosed.empty()) {
            strays.lastClosing = position;
        } else {
            Pair& pair = pairs_[unclosed.back().pair];
            pair.close = position;
            if (position == pair.open + kOpeningMarker.size()) {
                const bool isWithin = unclosed.size() > 1 || pieces_[piece].owner != kNone;
                (isWithin ? hasEmptyPair_ : hasOutermostEmptyPair_) = true;
            }
            pair.hash = RollingHash::between(unclosed.back().mark, hash.advance(text, position));
            closed_.push_back(unclosed.back().pair);
            unclosed.pop_back();
        }
    }
    pieces_[piece].endClosed = static_cast<std::uint32_t>(closed_.size());
    strays.openings = !unclosed.empty();
    pieces_[piece].endPair = static_cast<std::uint32_t>(pairs_.size());
    for (std::uint32_t pair = pieces_[piece].firstPair; pair < pieces_[piece].endPair; ++pair) {
        // Past what is never closed, so that no walk outwards goes through it.
        std::uint32_t& parent = pairs_[pair].parent;
        if (parent != kNone && pairs_[parent].close == kNone) parent = pairs_[parent].parent;
        if (pairs_[pair].close != kNone) addToIndex(pair);
    }
    return strays;
}

std::uint32_t PairedText::around(std::uint32_t pair) const {
    while (pairs_[pair].parent == kNone) {
        pair = pieces_[pairs_[pair].piece].owner;
        if (pair == kNone) return kNone;
    }
    return pairs_[pair].parent;
}

bool PairedText::isGone(std::uint32_t pair) const {
    while (pair != kNone) {
        if (pairs_[pair].replacement != kNone) return true;
        pair = around(pair);
    }
    return false;
}

bool PairedText::isBefore(std::uint32_t left, std::uint32_t right) const {
    const auto path = [this](std::uint32_t pair) {
        std::vector<std::uint32_t> places;
        for (; pair != kNone; pair = pieces_[pairs_[pair].piece].owner) places.push_back(pairs_[pair].open);
        std::reverse(places.begin(), places.end());
        return places;
    };
    if (pairs_[left].piece == pairs_[right].piece) return pairs_[left].open < pairs_[right].open;
    return path(left) < path(right);
}

void PairedText::addToIndex(std::uint32_t pair) {
    Bucket& bucket = index_[pairs_[pair].hash];
    if (bucket.pairs.empty() || isBefore(bucket.pairs.back(), pair)) {
        bucket.pairs.push_back(pair);
        return;
    }
    // What is gone in front is not looked at again.
    const auto place =
        std::upper_bound(bucket.pairs.begin() + static_cast<std::ptrdiff_t>(bucket.first), bucket.pairs.end(), pair,
                         [this](std::uint32_t one, std::uint32_t other) { return isBefore(one, other); });
    if (place == bucket.pairs.begin() + static_cast<std::ptrdiff_t>(bucket.first) && bucket.first > 0) {
        bucket.pairs[--bucket.first] = pair;
    } else {
        bucket.pairs.insert(place, pair);
    }
}

std::optional<PairedText::Place> PairedText::find(std::u16string_view name) {
    const std::uint64_t hash = RollingHash::of(name);
    const auto found = index_.find(hash);
    if (found == index_.end()) return std::nullopt;
    Bucket& bucket = found->second;
    const auto isStale = [&](std::uint32_t pair) { return pairs_[pair].hash != hash || isGone(pair); };
    while (bucket.first < bucket.pairs.size() && isStale(bucket.pairs[bucket.first])) ++bucket.first;
    for (std::size_t at = bucket.first; at < bucket.pairs.size(); ++at) {
        const std::uint32_t pair = bucket.pairs[at];
        if (!isStale(pair) && equalIgnoringCase(inner(pair), name)) return pair;
    }
    return std::nullopt;
}

void PairedText::replace(Place place, std::u16string result) {
    const auto piece = static_cast<std::uint32_t>(pieces_.size());
    const bool hasMarkers = result.find(u'<') != std::u16string::npos;
    if (formsMarker(place, result)) proven_ = false;
    const std::uint32_t depth = pieces_[pairs_[place].piece].depth + 1;
    if (depth > kMostNested) proven_ = false;
    pieces_.push_back({std::move(result), place, depth});
    pairs_[place].replacement = piece;
    const std::uint32_t outer = around(place);
    if (hasMarkers && proven_) {
        const Strays strays = addPairs(piece);
        // Its strays must find no partner outside.
        const bool closingBehind = lastStrayClosing_ != kNone;
        if (strays.lastClosing != kNone) proven_ = false;
        if (strays.openings && (outer != kNone || closingBehind)) proven_ = false;
        if (strays.openings && hasOutermostEmptyPair_) hasEmptyPair_ = true;
    }
    for (std::uint32_t pair = outer; pair != kNone && proven_; pair = around(pair)) refresh(pair);
}

// A pair's text changed: it is found under its new one.
void PairedText::refresh(std::uint32_t pair) {
    const std::u16string text = inner(pair);
    if (text.size() > budget_) {
        proven_ = false;
        return;
    }
    if (text.empty()) hasEmptyPair_ = true;
    budget_ -= text.size();
    const std::uint64_t hash = RollingHash::of(text);
    if (pairs_[pair].hash == hash) return;
    pairs_[pair].hash = hash;
    addToIndex(pair);
}

std::u16string PairedText::inner(std::uint32_t pair) const {
    const Pair& entry = pairs_[pair];
    std::u16string text;
    assemble(entry.piece, entry.open + kOpeningMarker.size(), entry.close, text);
    return text;
}

std::u16string PairedText::assemble() const {
    std::u16string text;
    text.reserve(pieces_.front().text.size());
    assemble(0, 0, pieces_.front().text.size(), text);
    return text;
}

std::size_t PairedText::pairsFrom(const Piece& piece, std::size_t start) const {
    const auto first = pairs_.begin() + piece.firstPair;
    const auto end = pairs_.begin() + piece.endPair;
    const auto found =
        std::lower_bound(first, end, start, [](const Pair& pair, std::size_t sought) { return pair.open < sought; });
    return static_cast<std::size_t>(found - pairs_.begin());
}

void PairedText::assemble(std::uint32_t piece, std::size_t start, std::size_t end, std::u16string& target) const {
    const Piece& source = pieces_[piece];
    for (std::size_t at = pairsFrom(source, start); at < source.endPair && pairs_[at].open < end; ++at) {
        const Pair& pair = pairs_[at];
        if (pair.replacement == kNone || pair.open < start) continue;
        target.append(source.text, start, pair.open - start);
        const std::uint32_t replacement = pair.replacement;
        assemble(replacement, 0, pieces_[replacement].text.size(), target);
        start = pair.close + kClosingMarker.size();
    }
    target.append(source.text, start, end - start);
}

}  // namespace velmor
