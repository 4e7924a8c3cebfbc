#include "rtf/tables/MarkerInsertion.h"

#include <algorithm>

#include "rtf/tables/TableMarkers.h"

namespace velmor {
namespace {

struct Edge {
    std::size_t index;
    std::size_t table;  // inner tables have the smaller numbers
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

std::size_t lengthWithout(std::size_t length, const std::vector<TextRange>& cuts) {
    for (const TextRange& cut : cuts) length -= cut.end - cut.begin;
    return length;
}

// Copies the text piece by piece and passes over what is cut.
class CuttingCopy {
public:
    CuttingCopy(const std::u16string& text, const std::vector<TextRange>& cuts, std::u16string& target)
        : text_(text), target_(target), cut_(cuts.begin()), lastCut_(cuts.end()) {}

    void upTo(std::size_t index) {
        for (; cut_ != lastCut_ && cut_->begin < index; ++cut_) {
            target_.append(text_, copied_, cut_->begin - copied_);
            copied_ = cut_->end;
        }
        target_.append(text_, copied_, index - copied_);
        copied_ = index;
    }

private:
    const std::u16string& text_;
    std::u16string& target_;
    std::vector<TextRange>::const_iterator cut_;
    std::vector<TextRange>::const_iterator lastCut_;
    std::size_t copied_ = 0;
};

std::size_t endWithoutBlanks(const std::u16string& text) {
    const std::size_t last = text.find_last_not_of(u' ');
    return last == std::u16string::npos ? 0 : last + 1;
}

}  // namespace

std::u16string MarkerInsertion::apply(const std::u16string& text, platform::Guids& guids, bool trimmed) const {
    constexpr std::size_t pairLength = startTableMarkerLength + endTableMarkerLength;
    const std::vector<Edge> edges = edgesOf(tables);
    std::u16string result;
    result.reserve(lengthWithout(text.size(), cuts) + tables.size() * pairLength);
    CuttingCopy copy(text, cuts, result);
    std::vector<std::u16string> open;
    for (const Edge& edge : edges) {
        copy.upTo(edge.index);
        if (edge.isStart) open.push_back(guids.next());
        result.append(edge.isStart ? startTableMarker : endTableMarker).append(open.back()).append(1, u'}');
        if (!edge.isStart) open.pop_back();
    }
    const std::size_t lastEdge = edges.empty() ? 0 : edges.back().index;
    copy.upTo(trimmed ? std::max(lastEdge, endWithoutBlanks(text)) : text.size());
    return result;
}

}  // namespace velmor
