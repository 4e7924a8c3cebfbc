#include "rtf/tables/MarkerPairs.h"

#include <optional>
#include <unordered_map>

#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t longestIdentity = 255;

std::optional<TableMarker> markerAt(std::u16string_view text, std::size_t index) {
    const bool isStart = standsAt(text, index, startTableMarker);
    if (!isStart && !standsAt(text, index, endTableMarker)) return std::nullopt;
    const std::size_t brace = index + (isStart ? startTableMarker : endTableMarker).size();
    if (!standsAt(text, brace, u"{")) return std::nullopt;
    const std::u16string_view rest = text.substr(brace + 1, longestIdentity + 1);
    const std::size_t length = rest.find_first_of(u"{}");
    if (length == nowhere || rest[length] == u'{') return std::nullopt;
    const std::size_t end = brace + length + 2;
    return TableMarker{index, end + standsAt(text, end, u"}"), isStart, rest.substr(0, length)};
}

std::vector<TableMarker> findMarkers(std::u16string_view text, bool tolerant) {
    constexpr std::u16string_view opening = u"{\\*\\korvane\\";
    std::vector<TableMarker> markers;
    RtfSearch search(text, tolerant);
    for (std::size_t at = 0; (at = search.find(opening, at)) != nowhere;) {
        const auto marker = markerAt(text, at);
        if (marker) markers.push_back(*marker);
        at = marker ? marker->end : at + opening.size();
    }
    return markers;
}

void findTableEnds(std::vector<TableMarker>& markers) {
    std::unordered_map<std::u16string_view, std::size_t> ends;
    for (auto marker = markers.rbegin(); marker != markers.rend(); ++marker) {
        if (!marker->isStart) {
            ends[marker->identity] = marker->begin;
        } else if (const auto end = ends.find(marker->identity); end != ends.end()) {
            marker->tableEnd = end->second;
        }
    }
}

}  // namespace

std::vector<TableMarker> findMarkerPairs(std::u16string_view text, bool tolerant) {
    std::vector<TableMarker> markers = findMarkers(text, tolerant);
    findTableEnds(markers);
    std::vector<TableMarker> paired;
    std::vector<std::size_t> open{text.size()};  // the ends of the tables around the marker
    std::size_t passOver = 0;                    // end of the skipped text
    for (const TableMarker& marker : markers) {
        if (marker.begin == open.back()) {
            open.pop_back();
            paired.push_back(marker);
        } else if (marker.isStart && marker.begin >= passOver) {
            if (marker.tableEnd < open.back()) {
                open.push_back(marker.tableEnd);
                paired.push_back(marker);
            } else if (!tolerant) {
                passOver = open.back();
            }
        }
    }
    return paired;
}

}  // namespace velmor
