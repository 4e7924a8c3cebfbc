#include "cli/TagsCommand.h"

#include <nlohmann/json.hpp>

#include "automation/Convert.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/TagTree.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;
using Json = nlohmann::ordered_json;

Json valueJson(const Variant& value) {
    if (const auto* number = value.get<std::int32_t>()) return *number;
    if (const auto* number = value.get<std::int16_t>()) return *number;
    if (const auto* number = value.get<double>()) return *number;
    if (const auto* flag = value.get<bool>()) return *flag;
    if (value.get<automation::Null>()) return nullptr;
    return toUtf8(automation::toText(value).value_or(u""));
}

Json tagJson(const TagNode& tag) {
    Json parameters = Json::array();
    for (const auto& [name, value] : tag.parameters) {
        parameters.push_back({{"name", toUtf8(name)}, {"value", valueJson(value)}});
    }
    Json tags = Json::array();
    for (const TagNode& nested : tag.tags) tags.push_back(tagJson(nested));
    return {{"position", tag.position},
            {"length", tag.length},
            {"handler", toUtf8(tag.handler)},
            {"command", toUtf8(tag.command)},
            {"commandValue", valueJson(tag.commandValue)},
            {"parameters", std::move(parameters)},
            {"tags", std::move(tags)}};
}

// A lone surrogate is no JSON: it becomes U+FFFD.
std::string dump(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// One line for each top-level tag, so that only one of them is held as JSON at a time.
std::string treeJson(const TagTree& tree) {
    std::string out = "{\"tags\": [";
    const char* separator = "\n";
    for (const TagNode& tag : tree.tags) {
        out += separator + dump(tagJson(tag));
        separator = ",\n";
    }
    return out + "],\n\"unclosed\": " + dump(tree.unclosed) + ",\n\"tooDeep\": " + dump(tree.tooDeep) + "}\n";
}

// In the list a text stays on its line, and a tag that holds much does not repeat all of it.
std::string shown(std::u16string_view text) {
    return toUtf8(onOneLine(text, 200));
}

// " = value"; nothing for the long 0, which is what a name alone holds.
std::string valueText(const Variant& value) {
    if (value.isEmpty() || value.identical(Variant(std::int32_t{0}))) return {};
    const std::string text = shown(automation::toText(value).value_or(u""));
    return " = " + (value.isString() ? '"' + text + '"' : text);
}

void appendTags(std::string& out, const std::vector<TagNode>& tags, const std::string& indent) {
    for (const TagNode& tag : tags) {
        out += indent + std::to_string(tag.position) + "  ";
        out += tag.handler.empty() ? "(no handler)" : shown(tag.handler) + " > " + shown(tag.command);
        out += valueText(tag.commandValue) + "\n";
        for (const auto& [name, value] : tag.parameters) {
            out += indent + "      " + shown(name) + valueText(value) + "\n";
        }
        appendTags(out, tag.tags, indent + "    ");
    }
}

std::string treeText(const TagTree& tree) {
    std::string out;
    appendTags(out, tree.tags, "");
    return out;
}

void reportUnclosed(const std::vector<std::size_t>& positions, const std::string& name) {
    constexpr std::size_t shown = 20;
    for (std::size_t index = 0; index < positions.size() && index < shown; ++index) {
        report(name + ": position " + std::to_string(positions[index]) + ": the opening marker is never closed");
    }
    if (positions.size() > shown) {
        report(name + ": " + std::to_string(positions.size() - shown) + " more opening markers are never closed");
    }
}

}  // namespace

ExitCode runTags(platform::Services& services, const TagsOptions& options) {
    const std::string name = inputName(options.input);
    const Document document = decodeTemplate(readAll(services.files, options.input), options.encoding, name);
    const TagTree tree = readTagTree(services, document.text);
    writeAll(services.files, "-", options.json ? treeJson(tree) : treeText(tree));
    reportUnclosed(tree.unclosed, name);
    if (tree.tooDeep > 0) {
        report(name + ": " + std::to_string(tree.tooDeep) + " tags are nested deeper than " +
               std::to_string(TagTree::maximalDepth) + " levels and not listed");
    }
    return tree.unclosed.empty() && tree.tooDeep == 0 ? exitDone : exitReported;
}

}  // namespace velmor::cli
