#include "rtf/tables/MarkerPairs.h"

#include <optional>
#include <unordered_map>

#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;
constexpr std::size_t longestIdentity = 255;

struct Marker {
    std::size_t begin;
    std::size_t end;
    bool isStart;
    std::u16string_view identity;
    std::size_t sameNext = nowhere;  // the next end marker with the identifier
};

std::optional<Marker> markerAt(std::u16string_view text, std::size_t index) {
    const bool isStart = standsAt(text, index, startTableMarker);
    if (!isStart && !standsAt(text, index, endTableMarker)) return std::nullopt;
    const std::size_t brace = index + (isStart ? startTableMarker : endTableMarker).size();
    if (!standsAt(text, brace, u"{")) return std::nullopt;
    const std::u16string_view behind = text.substr(brace + 1, longestIdentity + 1);
    const std::size_t length = behind.find_first_of(u"{}");
    if (length == nowhere || behind[length] == u'{') return std::nullopt;
    const std::size_t end = brace + length + 2;
    return Marker{index, end + standsAt(text, end, u"}"), isStart, behind.substr(0, length)};
}

std::vector<Marker> findMarkers(std::u16string_view text, bool tolerant) {
    constexpr std::u16string_view opening = u"{\\*\\korvane\\";
    std::vector<Marker> markers;
    RtfSearch search(text, tolerant);
    for (std::size_t at = 0; (at = search.find(opening, at)) != nowhere;) {
        const auto marker = markerAt(text, at);
        if (marker) markers.push_back(*marker);
        at = marker ? marker->end : at + opening.size();
    }
    return markers;
}

// The end markers of each identifier, for requests from left to right.
class EndMarkers {
public:
    explicit EndMarkers(std::vector<Marker>& markers) : markers_(markers) {
        for (std::size_t i = markers.size(); i-- > 0;) {
            if (markers[i].isStart) continue;
            const auto [first, isNew] = first_.try_emplace(markers[i].identity, i);
            if (isNew) continue;
            markers[i].sameNext = first->second;
            first->second = i;
        }
    }

    // The first end marker after a start marker; nowhere without one.
    std::size_t behind(const Marker& start) {
        const auto found = first_.find(start.identity);
        if (found == first_.end()) return nowhere;
        std::size_t& end = found->second;
        while (end != nowhere && markers_[end].begin < start.end) end = markers_[end].sameNext;
        return end == nowhere ? nowhere : markers_[end].begin;
    }

private:
    const std::vector<Marker>& markers_;
    std::unordered_map<std::u16string_view, std::size_t> first_;
};

}  // namespace

std::vector<PairedMarker> findMarkerPairs(std::u16string_view text, bool tolerant) {
    std::vector<Marker> markers = findMarkers(text, tolerant);
    EndMarkers ends(markers);
    std::vector<PairedMarker> paired;
    std::vector<std::size_t> open{text.size()};  // the ends of the tables around the marker
    std::size_t passOver = 0;                    // end of the skipped text
    for (const Marker& marker : markers) {
        if (marker.begin == open.back()) {
            open.pop_back();
            paired.push_back({marker.begin, marker.end, false, marker.begin});
        } else if (marker.isStart && marker.begin >= passOver) {
            const std::size_t end = ends.behind(marker);
            if (end < open.back()) {
                open.push_back(end);
                paired.push_back({marker.begin, marker.end, true, end});
            } else if (!tolerant) {
                passOver = open.back();
            }
        }
    }
    return paired;
}

}  // namespace velmor
