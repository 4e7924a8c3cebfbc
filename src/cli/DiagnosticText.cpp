#include "cli/DiagnosticText.h"

#include "cli/JsonText.h"
#include "cli/Streams.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

std::string severity(const Diagnostic& diagnostic) {
    return toUtf8(severityText(diagnostic.code));
}

// ---- JSON

Json placeJson(const SourcePlace& place) {
    return {{"file", toUtf8(place.file)}, {"line", place.line}, {"column", place.column}, {"offset", place.offset}};
}

}  // namespace

Json jsonOf(const Diagnostic& diagnostic) {
    Json json = {{"code", toUtf8(codeText(diagnostic.code))}, {"severity", severity(diagnostic)}};
    json.update(placeJson(diagnostic.place));
    json["length"] = diagnostic.length;
    json["message"] = toUtf8(diagnostic.message);
    json["hint"] = toUtf8(diagnostic.hint);
    json["place"] = toUtf8(diagnostic.seenAt);
    json["context"] = toUtf8(diagnostic.context);
    json["includedFrom"] = Json::array();
    for (const SourcePlace& place : diagnostic.includedFrom) json["includedFrom"].push_back(placeJson(place));
    return json;
}

namespace {

void printJson(const std::vector<Diagnostic>& diagnostics, std::size_t more) {
    JsonList list("diagnostics");
    for (const Diagnostic& diagnostic : diagnostics) list.add(jsonOf(diagnostic));
    list.end(",\n\"more\": " + std::to_string(more));
}

// ---- SARIF

// A relative or absolute path as a URI reference.
std::string uriOf(std::u16string_view path) {
    constexpr std::string_view plain = "-._~/";
    constexpr char digits[] = "0123456789ABCDEF";
    std::string uri;
    for (const char each : toUtf8(path)) {
        const auto byte = static_cast<unsigned char>(each);
        const bool isLetterOrDigit =
            (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
        if (isLetterOrDigit || plain.find(each) != plain.npos) {
            uri += each;
        } else if (each == '\\') {
            uri += '/';
        } else {
            uri += '%';
            uri += digits[byte >> 4];
            uri += digits[byte & 15];
        }
    }
    return uri;
}

Json sarifLocation(const SourcePlace& place, std::size_t length) {
    Json region = {{"startLine", place.line}, {"startColumn", place.column}, {"charOffset", place.offset - 1}};
    if (length > 0) region["charLength"] = length;
    return {{"physicalLocation", {{"artifactLocation", {{"uri", uriOf(place.file)}}}, {"region", region}}}};
}

Json sarifRules() {
    Json rules = Json::array();
    for (const DiagnosticCode code : allDiagnosticCodes()) {
        rules.push_back({{"id", toUtf8(codeText(code))},
                         {"shortDescription", {{"text", toUtf8(titleOf(code))}}},
                         {"defaultConfiguration", {{"level", toUtf8(severityText(code))}}}});
    }
    return rules;
}

Json sarifResult(const Diagnostic& diagnostic) {
    Json location = sarifLocation(diagnostic.place, diagnostic.length);
    if (!diagnostic.seenAt.empty()) {
        location["logicalLocations"] = Json::array({{{"fullyQualifiedName", toUtf8(diagnostic.seenAt)}}});
    }
    Json result = {{"ruleId", toUtf8(codeText(diagnostic.code))},
                   {"level", severity(diagnostic)},
                   {"message", {{"text", toUtf8(messageText(diagnostic))}}},
                   {"locations", Json::array({location})}};
    for (const SourcePlace& place : diagnostic.includedFrom) {
        Json included = sarifLocation(place, 0);
        included["message"] = {{"text", "included from here"}};
        result["relatedLocations"].push_back(included);
    }
    return result;
}

std::string sarifText(const std::vector<Diagnostic>& diagnostics) {
    Json results = Json::array();
    for (const Diagnostic& diagnostic : diagnostics) results.push_back(sarifResult(diagnostic));
    const Json driver = {{"name", "velmor"}, {"version", VELMOR_VERSION}, {"rules", sarifRules()}};
    const Json run = {
        {"tool", {{"driver", driver}}}, {"columnKind", "utf16CodeUnits"}, {"results", std::move(results)}};
    const Json log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                      {"version", "2.1.0"},
                      {"runs", Json::array({run})}};
    return jsonText(log) + "\n";
}

// ---- Workflow commands

std::string escaped(std::string_view text, std::string_view special) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    for (const char each : text) {
        if (special.find(each) == special.npos) {
            result += each;
            continue;
        }
        result += '%';
        result += digits[static_cast<unsigned char>(each) >> 4];
        result += digits[static_cast<unsigned char>(each) & 15];
    }
    return result;
}

std::string workflowCommand(const Diagnostic& diagnostic) {
    return "::" + severity(diagnostic) + " file=" + escaped(toUtf8(diagnostic.place.file), "%\r\n:,") +
           ",line=" + std::to_string(diagnostic.place.line) + ",col=" + std::to_string(diagnostic.place.column) +
           ",title=" + toUtf8(codeText(diagnostic.code)) + "::" + escaped(toUtf8(messageText(diagnostic)), "%\r\n") +
           "\n";
}

}  // namespace

void printDiagnostics(const std::vector<Diagnostic>& diagnostics, std::size_t more, CheckFormat format) {
    if (format == CheckFormat::json) return printJson(diagnostics, more);
    if (format == CheckFormat::sarif) print(sarifText(diagnostics));
    for (const Diagnostic& diagnostic : diagnostics) {
        if (format == CheckFormat::text) print(toUtf8(lineOf(diagnostic)) + "\n");
        if (format == CheckFormat::github) print(workflowCommand(diagnostic));
    }
    finishPrinting();
}

}  // namespace velmor::cli
