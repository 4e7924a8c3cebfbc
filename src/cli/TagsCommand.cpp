#include "cli/Commands.h"

#include <utility>
#include <vector>

#include "automation/Convert.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "core/TagTree.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

Json valueJson(const Variant& value) {
    if (const auto* number = value.get<std::int32_t>()) return *number;
    if (const auto* number = value.get<std::int16_t>()) return *number;
    if (const auto* number = value.get<double>()) return *number;
    if (const auto* flag = value.get<bool>()) return *flag;
    if (value.get<automation::Null>()) return nullptr;
    return toUtf8(automation::toText(value).value_or(u""));
}

Json tagJson(const TagNode& tag) {
    Json parameters = Json::array(), tags = Json::array();
    for (const auto& [name, value] : tag.parameters) {
        parameters.push_back({{"name", toUtf8(name)}, {"value", valueJson(value)}});
    }
    for (const TagNode& inner : tag.tags) tags.push_back(tagJson(inner));
    return {{"position", tag.position},
            {"length", tag.length},
            {"handler", toUtf8(tag.handler)},
            {"command", toUtf8(tag.command)},
            {"commandValue", valueJson(tag.commandValue)},
            {"parameters", std::move(parameters)},
            {"tags", std::move(tags)}};
}

// " = value"; nothing for the long 0, the value of a name alone.
std::string valueText(const Variant& value) {
    if (value.isEmpty() || value.identical(Variant(std::int32_t{0}))) return {};
    const std::string text = shown(automation::toText(value).value_or(u""));
    return " = " + (value.isString() ? '"' + text + '"' : text);
}

void printList(const TagNode& tag, const std::string& indent) {
    std::string lines = indent + std::to_string(tag.position) + "  ";
    lines += tag.handler.empty() ? "(no handler)" : shown(tag.handler) + " > " + shown(tag.command);
    lines += valueText(tag.commandValue) + "\n";
    for (const auto& [name, value] : tag.parameters) lines += indent + "      " + shown(name) + valueText(value) + "\n";
    print(lines);
    for (const TagNode& inner : tag.tags) printList(inner, indent + "    ");
}

UnvisitedTags printTags(platform::Services& services, std::u16string_view text, bool json) {
    if (!json) return visitTags(services, text, [](const TagNode& tag) { printList(tag, {}); });
    JsonList list("tags");
    UnvisitedTags unvisited = visitTags(services, text, [&](const TagNode& tag) {
        list.add(tagJson(tag));
        list.flush();
    });
    list.end(",\n\"unclosed\": " + jsonText(unvisited.unclosed) +
             ",\n\"tooDeep\": " + std::to_string(unvisited.tooDeep));
    return unvisited;
}

void reportUnclosed(const std::vector<std::size_t>& positions, const std::string& name) {
    constexpr std::size_t most = 20;
    for (std::size_t index = 0; index < positions.size() && index < most; ++index) {
        report(name + ": position " + std::to_string(positions[index]) + ": the opening marker is never closed");
    }
    if (positions.size() > most) {
        report(name + ": " + std::to_string(positions.size() - most) + " more opening markers are never closed");
    }
}

}  // namespace

ExitCode runTags(platform::Services& services, const TagsOptions& options) {
    const std::string name = inputName(options.input);
    const Document document = decodeTemplate(readAll(services.files, options.input), options.encoding, name);
    const UnvisitedTags unvisited = printTags(services, document.text, options.json);
    finishPrinting();
    reportUnclosed(unvisited.unclosed, name);
    if (unvisited.tooDeep > 0) {
        report(name + ": " + std::to_string(unvisited.tooDeep) + " tags are nested deeper than " +
               std::to_string(UnvisitedTags::maximalDepth) + " levels and not listed");
    }
    return unvisited.unclosed.empty() && unvisited.tooDeep == 0 ? exitDone : exitReported;
}

}  // namespace velmor::cli
