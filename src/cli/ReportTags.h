#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "check/TagParts.h"
#include "check/TemplateFile.h"
#include "check/TemplatePlaces.h"
#include "cli/JsonText.h"
#include "cli/ReportCollector.h"

namespace velmor::cli {

// The tags of a report's page: those that were evaluated, in the order in which they began, and then those of the
// template that were not.
class ReportTags {
public:
    // All must last as long.
    ReportTags(platform::Services& services, const TemplateFile& file, const TemplatePlaces& places,
               const ReportCollector& collector);

    // Of each: "handler", "command", "commandValue", "parameters", "name", "parent" and "origin"; if it was evaluated
    // "value", "length" and "microseconds"; for an outermost one "line" and "column".
    Json tags() const;
    // [story, begin, end, tag] of each tag of the template's text, the outer before the inner.
    Json spans() const;

private:
    using Run = TraceCollector::Tag;
    static constexpr std::uint32_t noTag = TraceCollector::noTag;

    void placeOutermost();
    void placeNested();
    std::u16string_view writtenName(const TemplateTag& tag) const;
    Json runJson(std::size_t run) const;
    Json unevaluatedJson(std::size_t tag) const;
    Json describe(const TemplateFile& file, const TemplateTag& tag) const;
    Json describeName(std::u16string_view name) const;
    std::string shownValue(const TagElement& element) const;
    void addValue(Json& json, std::size_t run) const;

    platform::Services& services_;
    const TemplateFile& file_;
    const TemplatePlaces& places_;
    const ReportCollector& collector_;
    std::vector<std::uint32_t> tagOf_;  // of each run: its index among the template's tags, or noTag
    std::vector<std::uint32_t>
        itemOf_;                   // of each of the template's tags: its index on the page, or noTag beyond the limit
    std::size_t unevaluated_ = 0;  // tags of the template that the page has in addition to the runs
};

}  // namespace velmor::cli
