#include "cli/ReportTags.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

#include "check/TagParts.h"
#include "cli/LineText.h"
#include "cli/ReportText.h"
#include "core/EvaluationRun.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/RtfStart.h"

namespace velmor::cli {
namespace {

constexpr std::size_t mostOfValue = 2'000;  // characters of a value that the page has

// A value as the author sees it: the text of a value in an RTF template is RTF.
std::u16string seenValue(std::u16string_view value, bool isRtf) {
    if (!isRtf) return std::u16string(value);
    return readVisibleText(std::u16string(rtfStart).append(u" ").append(value).append(u"}")).stories.front().text();
}

// A tag by what is written between its markers.
Json named(std::u16string_view name) {
    name = name.substr(0, ReportCollector::mostOfName);
    const std::size_t separator = name.find(handlerSeparator);
    const std::u16string handler = separator == name.npos ? std::u16string() : upperCase(name.substr(0, separator));
    return {{"name", reportText(name)}, {"handler", shown(handler)}, {"command", ""}};
}

// The tags of a report's page: those that were evaluated, in the order in which they began, and then those of the
// template that were not.
class ReportTags {
public:
    ReportTags(platform::Services& services, const TemplateFile& file, const TemplatePlaces& places,
               const ReportCollector& collector)
        : services_(services),
          file_(file),
          places_(places),
          collector_(collector),
          tagOf_(collector.tags().size(), noTag),
          itemOf_(file.tags().size(), noTag) {
        placeOutermost();
        placeNested();
        for (std::uint32_t& item : itemOf_) {
            if (item != noTag || unevaluated_ == ReportCollector::mostTags) continue;
            item = static_cast<std::uint32_t>(tagOf_.size() + unevaluated_++);
        }
    }

    Json tags() const {
        Json tags = Json::array();
        for (std::size_t run = 0; run < tagOf_.size(); ++run) tags.push_back(runJson(run));
        for (std::size_t tag = 0; tag < itemOf_.size(); ++tag) {
            if (itemOf_[tag] != noTag && itemOf_[tag] >= tagOf_.size()) tags.push_back(unevaluatedJson(tag));
        }
        return tags;
    }

    Json spans() const {
        std::vector<std::size_t> starts{0};  // of the stories in the text that the page shows
        for (const Story& story : file_.stories()) starts.push_back(starts.back() + story.text().size());
        Json spans = Json::array();
        for (std::size_t tag = 0; tag < itemOf_.size(); ++tag) {
            const TemplateTag& each = file_.tags()[tag];
            const std::size_t end = each.span.complete() ? each.span.end() : each.span.open + openingMarker.size();
            if (itemOf_[tag] == noTag || starts[each.story] + end > mostOfTemplate) continue;
            spans.push_back({each.story, each.span.open, end, itemOf_[tag]});
        }
        return spans;
    }

private:
    using Run = TraceCollector::Tag;
    static constexpr std::uint32_t noTag = TraceCollector::noTag;

    // By their places.
    void placeOutermost() {
        std::unordered_map<std::size_t, std::uint32_t> tags;
        for (std::uint32_t tag = 0; tag < itemOf_.size(); ++tag) {
            const TemplateTag& each = file_.tags()[tag];
            tags.emplace(file_.storyOf(each).source(each.span.open).begin + 1, tag);
        }
        for (std::uint32_t run = 0; run < tagOf_.size(); ++run) {
            const Run& each = collector_.tags()[run];
            if (each.parent != noTag || each.index == 0) continue;
            const auto found = tags.find(places_.of(each.index, each.position).position);
            if (found == tags.end()) continue;
            tagOf_[run] = found->second;
            itemOf_[found->second] = run;
        }
    }

    // By the tag around them, in which they are evaluated, and their text.
    void placeNested() {
        std::map<std::pair<std::uint32_t, std::u16string_view>, std::vector<std::uint32_t>> runs;
        for (auto run = static_cast<std::uint32_t>(tagOf_.size()); run-- > 0;) {
            const Run& each = collector_.tags()[run];
            if (each.parent != noTag && each.origin == Origin::author) {
                runs[{each.parent, collector_.nameOf(each)}].push_back(run);
            }
        }
        for (std::uint32_t tag = 0; tag < itemOf_.size(); ++tag) {
            const TemplateTag& each = file_.tags()[tag];
            if (each.parent == TemplateTag::noTag || itemOf_[each.parent] == noTag || !each.span.complete()) continue;
            const auto found = runs.find({itemOf_[each.parent], writtenName(each)});
            if (found == runs.end() || found->second.empty()) continue;
            itemOf_[tag] = found->second.back();
            tagOf_[itemOf_[tag]] = tag;
            found->second.pop_back();
        }
    }

    // As the collector keeps it.
    std::u16string_view writtenName(const TemplateTag& tag) const {
        const Story& story = file_.storyOf(tag);
        const std::size_t begin = story.source(tag.span.open + openingMarker.size() - 1).end;
        const std::size_t length = story.source(tag.span.close).begin - begin;
        return std::u16string_view(file_.source()).substr(begin, std::min(length, ReportCollector::mostOfName));
    }

    Json runJson(std::size_t run) const {
        const Run& each = collector_.tags()[run];
        Json json =
            tagOf_[run] != noTag ? describe(file_, file_.tags()[tagOf_[run]]) : describeName(collector_.nameOf(each));
        json["parent"] = each.parent == noTag ? Json(nullptr) : Json(each.parent);
        json["origin"] = originText(each.origin);
        if (each.parent == noTag && each.index > 0) {
            const TemplatePlaces::Place place = places_.of(each.index, each.position);
            json["line"] = place.line;
            json["column"] = place.column;
        }
        addValue(json, run);
        return json;
    }

    void addValue(Json& json, std::size_t run) const {
        const Run& each = collector_.tags()[run];
        const bool isRtf = documentStandsAt(file_.source(), 0);
        const std::u16string seen = seenValue(collector_.valueOf(run), isRtf);
        json["value"] = reportText(seen, mostOfValue);
        json["length"] = each.length;
        if (seen.size() > mostOfValue || collector_.valueOf(run).size() < each.length) json["isCut"] = true;
        const auto tenths = each.time.count() / 100;
        json["microseconds"] = static_cast<double>(tenths) / 10;
    }

    Json unevaluatedJson(std::size_t tag) const {
        const TemplateTag& each = file_.tags()[tag];
        Json json = describe(file_, each);
        const bool isNested = each.parent != TemplateTag::noTag && itemOf_[each.parent] != noTag;
        json["parent"] = isNested ? Json(itemOf_[each.parent]) : Json(nullptr);
        json["origin"] = originText(Origin::author);
        const SourcePlace place = file_.placeOf(each);
        json["line"] = place.line;
        json["column"] = place.column;
        json["isClosed"] = each.span.complete();
        return json;
    }

    // A tag of the file, as the author sees it. One that evaluation does not reach is not read: each reading costs the
    // length of the tag, with all tags in it.
    Json describe(const TemplateFile& file, const TemplateTag& tag) const {
        if (!tag.span.complete()) return {{"name", ""}, {"handler", ""}, {"command", ""}};
        Json json = named(file.innerOf(tag));
        const bool isTooDeep = tag.depth >= static_cast<std::uint32_t>(deepestLevel);
        if (json["handler"].get_ref<const std::string&>().empty() || isTooDeep) return json;
        const TagParts parts(file, tag);
        json["command"] = shown(parts.command());
        if (parts.commandElement().hasValue()) json["commandValue"] = shownValue(parts.commandElement());
        json["parameters"] = Json::array();
        for (const TagElement& each : parts.parameters()) {
            Json value = each.hasValue() ? Json(shownValue(each)) : Json(nullptr);
            json["parameters"].push_back(Json::array({shown(each.name()), std::move(value)}));
        }
        return json;
    }

    // As evaluation reads it. Only the beginning of a long one is looked at, as it is written: it holds tags, each of
    // which is shown by itself.
    std::string shownValue(const TagElement& element) const {
        constexpr std::size_t mostRead = 2'000;
        std::u16string_view written = element.writtenValue();
        if (written.size() <= mostRead || written.starts_with(u'~')) return shown(element.value(services_));
        if (written.starts_with(u'"')) written.remove_prefix(1);
        return shown(written.substr(0, mostRead));
    }

    // A tag of an included file or of a value. One that is not kept as a whole may lack its parameters.
    Json describeName(std::u16string_view name) const {
        std::u16string text(openingMarker);
        text.append(name).append(closingMarker);
        const TemplateFile file({}, std::move(text), {});
        const TemplateTag& tag = file.tags().front();
        return tag.span.complete() ? describe(file, tag) : named(name);
    }

    platform::Services& services_;
    const TemplateFile& file_;
    const TemplatePlaces& places_;
    const ReportCollector& collector_;
    std::vector<std::uint32_t> tagOf_;  // of each run: its index among the template's tags, or noTag
    std::vector<std::uint32_t>
        itemOf_;                   // of each of the template's tags: its index on the page, or noTag beyond the limit
    std::size_t unevaluated_ = 0;  // tags of the template that the page has in addition to the runs
};

}  // namespace

void addReportTags(Json& page, platform::Services& services, const TemplateFile& file, const TemplatePlaces& places,
                   const ReportCollector& collector) {
    const ReportTags tags(services, file, places, collector);
    page["tags"] = tags.tags();
    page["spans"] = tags.spans();
}

}  // namespace velmor::cli
