#include "cli/RunRecord.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "automation/Convert.h"
#include "cli/Failure.h"
#include "cli/RecordValues.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr int version = 1;
constexpr const char* formatName = "velmor run";
constexpr std::size_t headLines = 2;

constexpr std::array<const char*, 4> encodings = {"ansi", "utf-8", "utf-16", "utf-16be"};  // by TextEncoding

// What the user's settings make of a few values, and what the bytes of the ANSI code page mean.
Json settings() {
    const automation::Variant values[] = {automation::Variant(1234.5), automation::Variant(true),
                                          automation::Variant(automation::Date{45356.75})};
    Json form = Json::array();
    for (const automation::Variant& value : values) {
        form.push_back(textForm(automation::toText(value).value_or(std::u16string())));
    }
    const auto date = automation::parseDate(u"1/2");
    form.push_back(numberForm(date ? date->days : 0));
    std::string upperHalf(128, '\0');
    std::iota(upperHalf.begin(), upperHalf.end(), '\x80');
    form.push_back(textForm(fromAnsi(upperHalf)));
    return form;
}

// Each option with its name in a record, but --include-path, which may be absent.
template <class Options, class Each>
void eachOption(Options& options, const Each& each) {
    each("template", options.input);
    each("encoding", options.encoding);
    each("properties", options.propertyFile);
    each("data", options.dataFile);
    each("property", options.properties);
    each("exact", options.exact);
    each("sandbox", options.sandbox);
    each("rules", options.rules);
}

Json optionsForm(const TemplateOptions& options) {
    Json form = Json::object({{"include-path", options.includePath ? Json(*options.includePath) : Json()}});
    eachOption(options, [&](const char* name, const auto& value) { form[name] = value; });
    return form;
}

TemplateOptions optionsOf(const Json& form) {
    TemplateOptions options;
    if (const Json& path = form.at("include-path"); !path.is_null()) options.includePath = path.get<std::string>();
    eachOption(options, [&](const char* name, auto& value) { form.at(name).get_to(value); });
    return options;
}

Json filesForm(const TemplateFiles& files) {
    Json form = {{"template", bytesForm(files.document)}};
    if (files.properties) {
        form["properties"] = Json::array({textForm(files.properties->text), files.properties->isDelimited});
    }
    if (files.data) form["data"] = bytesForm(*files.data);
    return form;
}

TemplateFiles filesOf(const Json& form) {
    TemplateFiles files{bytesOf(form.at("template")), {}, {}};
    if (form.contains("properties")) {
        files.properties = {textOf(form["properties"].at(0)), form["properties"].at(1).get<bool>()};
    }
    if (form.contains("data")) files.data = bytesOf(form["data"]);
    return files;
}

// Without the line end of the last one.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

[[noreturn]] void refuseGiven(const std::string& what) {
    throw Failure(exitFile, what + " is not that of the record");
}

}  // namespace

std::vector<Json> recordHead(const RunInput& input) {
    return {Json::object({{"format", formatName}, {"version", version}}),
            Json::object({{"options", optionsForm(input.options)},
                          {"files", filesForm(input.files)},
                          {"output", encodings.at(static_cast<std::size_t>(input.encoding))},
                          {"year", input.year},
                          {"settings", settings()}})};
}

RunRecord::RunRecord(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)), lines_(linesOf(text_)) {
    const auto lineAt = [&](std::size_t line) { return line < lines_.size() ? recordLine(lines_[line]) : Json(); };
    const Json format = lineAt(0);
    if (!format.contains("format") || format["format"] != formatName) refuse(1, "this is not a record of velmor");
    if (!format.contains("version") || format["version"] != version) refuse(1, "another velmor wrote this record");
    const Json last = lines_.size() > headLines ? lineAt(lines_.size() - 1) : Json();
    if (!last.contains("end")) refuse(lines_.size(), "the record is cut: its end is missing");
    try {
        readInput(lineAt(1));
    } catch (const Json::exception&) {
        refuse(2, "the record is damaged");
    } catch (const std::logic_error&) {
        refuse(2, "the record is damaged");
    }
}

void RunRecord::readInput(const Json& line) {
    input_ = {optionsOf(line.at("options")), filesOf(line.at("files")), {}, line.at("year").get<int>()};
    const auto encoding = std::find(encodings.begin(), encodings.end(), line.at("output").get<std::string>());
    if (encoding == encodings.end()) throw std::out_of_range("output");
    input_.encoding = static_cast<TextEncoding>(encoding - encodings.begin());
    automation::portable::assumeYear(input_.year);
    if (line.at("settings") != settings()) {
        refuse(2, "it was recorded with other settings of numbers, dates or characters: " + jsonText(line["settings"]));
    }
}

void RunRecord::refuse(std::size_t line, const std::string& reason) const {
    throw Failure(exitFile, name_ + ":" + std::to_string(line) + ": " + reason);
}

std::unique_ptr<Tape> RunRecord::tape() const {
    return replayingTape(name_, lines_, headLines);
}

void RunRecord::requireSame(const platform::Files& files, const TemplateOptions& given) const {
    const TemplateOptions& own = input_.options;
    // A file that is given by the recorded name may be gone.
    const auto isThere = [&](const std::string& name, const std::string& recorded) {
        return !name.empty() && (name != recorded || name == "-" || files.exists(fromUtf8(name)));
    };
    if (isThere(given.input, own.input) && readAll(files, given.input) != input_.files.document) {
        refuseGiven("the template " + inputName(given.input));
    }
    const bool hasPassword = given.passwordFile.empty() || files.exists(fromUtf8(given.passwordFile));
    if (isThere(given.propertyFile, own.propertyFile) && hasPassword &&
        readPropertyText(files, {given.propertyFile, given.passwordFile, own.encoding}) != input_.files.properties) {
        refuseGiven("the property file " + inputName(given.propertyFile));
    }
    if (isThere(given.dataFile, own.dataFile) && readAll(files, given.dataFile) != input_.files.data) {
        refuseGiven("the data file " + inputName(given.dataFile));
    }
    for (const auto& [rule, value] : given.rules) {
        const auto recorded = own.rules.find(rule);
        if (recorded == own.rules.end() || recorded->second != value) refuseGiven(rule);
    }
    const Json asked = optionsForm(given);
    const Json recorded = optionsForm(own);
    const Json none = optionsForm({});
    for (const auto& [option, value] : asked.items()) {
        const bool isApart = option == "template" || option == "properties" || option == "data" || option == "rules";
        if (!isApart && value != none[option] && value != recorded[option]) refuseGiven("--" + option);
    }
}

}  // namespace velmor::cli
