#include "rtf/tables/MarkerInsertion.h"

#include <algorithm>

#include "rtf/edit/TextEdits.h"
#include "rtf/tables/TableMarkers.h"

namespace velmor {
namespace {

struct Edge {
    std::size_t index;
    std::size_t table;  // inner tables have smaller numbers
    bool isStart;

    // At one place a table ends before the next one starts; outer tables start before inner ones.
    bool operator<(const Edge& other) const noexcept {
        if (index != other.index) return index < other.index;
        if (isStart != other.isStart) return !isStart;
        return isStart ? table > other.table : table < other.table;
    }
};

std::vector<Edge> edgesOf(const std::vector<TextRange>& tables) {
    std::vector<Edge> edges;
    edges.reserve(tables.size() * 2);
    for (std::size_t i = 0; i < tables.size(); ++i) {
        edges.push_back({tables[i].begin, i, true});
        edges.push_back({tables[i].end, i, false});
    }
    if (!std::is_sorted(edges.begin(), edges.end())) std::sort(edges.begin(), edges.end());
    return edges;
}

}  // namespace

void MarkerInsertion::apply(std::u16string& text, platform::Guids& guids) const {
    TextEdits edits;
    auto cut = cuts.begin();
    const auto cutUpTo = [&](std::size_t index) {
        for (; cut != cuts.end() && cut->begin < index; ++cut) edits.replace(cut->begin, cut->end, {});
    };
    std::vector<std::u16string_view> open;
    for (const Edge& edge : edgesOf(tables)) {
        cutUpTo(edge.index);
        if (edge.isStart) open.push_back(edits.keep(guids.next().append(1, u'}')));
        edits.insert(edge.index, edge.isStart ? startTableMarker : endTableMarker);
        edits.insert(edge.index, open.back());
        if (!edge.isStart) open.pop_back();
    }
    cutUpTo(text.size());
    edits.apply(text);
}

}  // namespace velmor
