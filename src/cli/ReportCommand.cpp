#include "cli/Commands.h"

#include <unordered_map>

#include "check/Suggestion.h"
#include "cli/DiagnosticText.h"
#include "cli/ErrorReport.h"
#include "cli/LineText.h"
#include "cli/PropertyValue.h"
#include "cli/ReportCollector.h"
#include "cli/ReportTags.h"
#include "cli/ReportText.h"
#include "cli/Streams.h"
#include "cli/report/ReportPage.h"
#include "core/Options.h"
#include "core/kvTag.h"
#include "properties/PropertyEnumerator.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// Of the template, or of the tag that includes the file.
const SourcePlace& templatePlace(const Diagnostic& diagnostic) {
    return diagnostic.includedFrom.empty() ? diagnostic.place : diagnostic.includedFrom.back();
}

Json problems(const TemplateFile& file, const CheckResult& checked, const ErrorReport& errors) {
    Json problems = Json::array();
    for (const Diagnostic& each : checked.diagnostics) {
        Json json = jsonOf(each);
        json["at"] = reportPlace(file, templatePlace(each).offset - 1);
        problems.push_back(std::move(json));
    }
    for (const ErrorReport::Line& each : errors.lines()) {
        Json json = {{"severity", "error"}, {"message", each.text}, {"count", each.count}};
        if (each.place) {
            json["line"] = each.place->line;
            json["column"] = each.place->column;
            json["at"] = reportPlace(file, each.place->position - 1);
        }
        problems.push_back(std::move(json));
    }
    return problems;
}

// The page with its data. JSON has "<" only in texts, where an escape takes its place: no text ends the script element.
std::string pageOf(const Json& data) {
    constexpr std::string_view dataPlaceholder = "{{data}}";
    const std::string json = data.dump(-1, ' ', true, Json::error_handler_t::replace);
    const std::string_view page = reportPage;
    const std::size_t place = page.find(dataPlaceholder);
    std::string text(page.substr(0, place));
    text.reserve(page.size() + json.size() + json.size() / 8);
    for (const char each : json) {
        if (each == '<') {
            text += "\\u003c";
        } else {
            text += each;
        }
    }
    return text.append(page.substr(place + dataPlaceholder.size()));
}

// What heads the page.
Json headOf(platform::Services& services, const TemplateFile& file, kvTag& tag, const ReportCollector& collector) {
    return {{"program", "velmor " VELMOR_VERSION},
            {"template", toUtf8(file.name())},
            {"date", dateText(services.clock.now(), ' ')},
            {"length", tag.Result().size()},
            {"hasFailed", tag.hasFailed()},
            {"omitted", collector.omitted()},
            {"isCut", isReportCut(file)}};
}

Json rowOf(std::u16string_view name, Json value, const char* origin) {
    return {{"name", shown(name)}, {"value", std::move(value)}, {"origin", origin}, {"found", 0},
            {"missed", 0},         {"tags", Json::array()},     {"isRead", false}};
}

void addRead(Json& row, const ReportCollector::Property& asked) {
    row["found"] = asked.found;
    row["missed"] = asked.missed;
    row["tags"] = asked.tags;
    row["isRead"] = asked.found > 0 || asked.isReadElsewhere;
}

// Of the absent names, and of those that are set.
std::vector<std::u16string> namesOf(const Json& rows, bool isAbsent) {
    std::vector<std::u16string> names;
    for (const Json& row : rows) {
        if ((row["origin"] == "absent") == isAbsent) names.push_back(fromUtf8(row["name"].get<std::string>()));
    }
    return names;
}

// The properties of the page: those that are set, and those that the evaluation asked for in vain. Calls go in the
// order of the members.
class ReportProperties {
public:
    // Those that are not known yet; "given" before evaluation, "template" after it.
    void add(const privProperties& properties, const char* origin) {
        const auto each = properties.NewEnum();
        while (const PropertyRef property = each->next()) {
            if (isOption(property->Name()) || rows_.size() == mostRows) continue;
            if (!known_.emplace(upperCase(property->Name()), rows_.size()).second) continue;
            rows_.push_back(rowOf(property->Name(), shown(property->ValueStr()), origin));
        }
    }

    void addReads(const std::vector<ReportCollector::Property>& asked) {
        for (const ReportCollector::Property& each : asked) {
            const auto [row, isNew] = known_.try_emplace(upperCase(each.name), rows_.size());
            if (isNew && rows_.size() == mostRows) return;
            if (isNew) rows_.push_back(rowOf(each.name, nullptr, "absent"));
            addRead(rows_[row->second], each);
        }
    }

    // Of each: "name", "value" (as given, if it was), "origin" ("given", "template" or "absent"), "found" and "missed"
    // (by how many tags), "tags", "isRead" and "similar", the name of one that is absent for one that nobody reads, and
    // the reverse.
    Json json() && {
        const std::vector<std::u16string> absent = namesOf(rows_, true), set = namesOf(rows_, false);
        std::size_t suggestions = 0;
        for (Json& row : rows_) {
            const bool isAbsent = row["origin"] == "absent";
            if ((!isAbsent && row["isRead"] == true) || suggestions++ >= mostSuggestions) continue;
            row["similar"] = toUtf8(nearestName(fromUtf8(row["name"].get<std::string>()), isAbsent ? set : absent));
        }
        return std::move(rows_);
    }

private:
    static constexpr std::size_t mostRows = 10'000;
    static constexpr std::size_t mostSuggestions = 500;  // each costs a comparison with all other names

    Json rows_ = Json::array();
    std::unordered_map<std::u16string, std::size_t> known_;  // by name in upper case
};

}  // namespace

ExitCode runReport(platform::Services& services, const ReportOptions& options) {
    TemplateInput input(services, options);
    std::u16string& text = input.document().text;
    TemplateCheck check = input.makeCheck();
    const CheckResult checked = check.run(fromUtf8(options.input.empty() ? "-" : options.input), text);

    const TemplatePlaces places(text);
    ErrorReport errors(inputName(options.input), places);
    const std::shared_ptr<kvTag> tag = input.makeTag();
    ReportCollector collector(tag->Properties().own());
    ReportProperties properties;
    properties.add(*tag->Properties().own(), "given");
    tag->Value(std::move(text));
    Json data = headOf(services, check.file(), *tag, collector);
    properties.add(*tag->Properties().own(), "template");
    properties.addReads(collector.properties());

    data["stories"] = reportStories(check.file());
    addReportTags(data, input.services(), check.file(), places, collector);
    data["problems"] = problems(check.file(), checked, errors);
    data["moreProblems"] = checked.more + errors.others();
    data["properties"] = std::move(properties).json();
    const bool reported = errors.print();
    writeAll(services.files, options.output, pageOf(data));
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace velmor::cli
