#include "cli/Commands.h"
#include "cli/DiagnosticText.h"
#include "cli/ErrorReport.h"
#include "cli/PropertyValue.h"
#include "cli/ReportCollector.h"
#include "cli/ReportProperties.h"
#include "cli/ReportTags.h"
#include "cli/ReportText.h"
#include "cli/Streams.h"
#include "cli/report/ReportPage.h"
#include "core/kvTag.h"
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

    const ReportTags tags(input.services(), check.file(), places, collector);
    data["stories"] = reportStories(check.file());
    data["tags"] = tags.tags();
    data["spans"] = tags.spans();
    data["problems"] = problems(check.file(), checked, errors);
    data["moreProblems"] = checked.more + errors.others();
    data["properties"] = std::move(properties).json();
    const bool reported = errors.print();
    writeAll(services.files, options.output, pageOf(data));
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace velmor::cli
