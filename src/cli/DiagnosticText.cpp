#include "cli/DiagnosticText.h"

#include <algorithm>

#include "cli/Streams.h"
#include "common/ByteText.h"
#include "text/Characters.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

std::string severity(const Diagnostic& diagnostic) {
    return toUtf8(severityText(diagnostic.code));
}

// With each character that `isSpecial` names as its number.
template <class IsSpecial>
std::string percentEncoded(std::string_view text, IsSpecial isSpecial) {
    std::string result;
    for (const char& each : text) {
        result += isSpecial(each) ? "%" + toUtf8(hexadecimal({&each, 1})) : std::string(1, each);
    }
    return result;
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
    std::string plain = toUtf8(path);
    std::replace(plain.begin(), plain.end(), '\\', '/');
    return percentEncoded(plain, [](char each) {
        const auto unit = static_cast<unsigned char>(each);
        return !isLetter(unit) && !isDigit(unit) && std::string_view("-._~/").find(each) == std::string_view::npos;
    });
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
    return percentEncoded(text, [&](char each) { return special.find(each) != special.npos; });
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
