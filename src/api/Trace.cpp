#include "api/Trace.h"

#include <chrono>
#include <tuple>

#include "text/Encoding.h"

namespace velmor::api {

std::vector<TracedTag> tracedTags(const TraceCollector& trace, const TemplatePlaces& places) {
    const std::vector<TraceCollector::Place> results = trace.places();
    std::vector<TracedTag> tags;
    tags.reserve(results.size());
    for (std::size_t index = 0; index < results.size(); ++index) {
        const TraceCollector::Tag& from = trace.tags()[index];
        const bool isOutermost = from.parent == TraceCollector::noTag;
        const bool hasPlace = isOutermost && from.index > 0;
        TracedTag& tag = tags.emplace_back();
        tag.parent = isOutermost ? 0 : std::size_t{from.parent} + 1;
        tag.origin = fromUtf8(originText(from.origin));
        tag.name = trace.nameOf(from);
        std::tie(tag.handler, tag.command) = handlerAndCommand(tag.name);
        tag.position = hasPlace ? places.of(from.index, from.position).position : from.position;
        tag.length = results[index].length;
        if (results[index].start != TraceCollector::npos) tag.place = results[index].start + 1;
        tag.seconds = std::chrono::duration<double>(from.time).count();
    }
    return tags;
}

}  // namespace velmor::api
