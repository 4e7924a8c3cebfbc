#include "cli/Commands.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "automation/Convert.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "core/Markup.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

// One tag of a template, parsed as evaluation parses it.
struct TagNode {
    struct Parameter {
        std::u16string name;
        Variant value;  // the long 0 for a name alone
    };

    std::size_t position = 0;  // of its opening marker within the template, from 1
    std::size_t length = 0;    // from there to the end of its closing marker
    std::u16string handler;    // empty when the tag names none; its result is empty
    std::u16string command;
    Variant commandValue;
    std::vector<Parameter> parameters;
    std::vector<TagNode> tags;  // within its parameters
};

// Markers and tags that were left out.
struct UnvisitedTags {
    static constexpr std::size_t maximalDepth = 100;

    std::vector<std::size_t> unclosed;  // positions of opening markers without their closing one
    std::size_t tooDeep = 0;            // tags nested deeper than maximalDepth
};

TagNode parseTag(platform::Services& services, std::u16string_view text, const TagSpan& span) {
    TagNode node;
    node.position = span.open + std::size_t{1};
    node.length = span.end() - span.open;
    const auto tag = std::make_shared<kvTag>(services);
    tag->Name(span.inner(text));
    if (span.inner(text).find(kHandlerSeparator) == text.npos) return node;
    node.handler = tag->HandlerName();
    node.command = tag->CommandName();
    node.commandValue = tag->CommandValue();
    const auto elements = tag->Elements();
    for (std::int32_t index = 3; index <= elements->Count(); ++index) {
        const auto element = elements->Item(index);
        node.parameters.push_back({element->Name(), element->Value()});
    }
    return node;
}

// The template, or a tag that may contain the next one.
struct Level {
    std::size_t end;
    TagNode tag = {};
    std::size_t resume = 0;  // markers before this place are skipped
};

// Hands out each outermost tag, in the order of the opening markers. Evaluates nothing. Linear in the template
// for a given depth of nesting; holds one outermost tag at a time.
UnvisitedTags visitTags(platform::Services& services, std::u16string_view text,
                        const std::function<void(const TagNode&)>& visit) {
    UnvisitedTags unvisited;
    std::vector<Level> levels = {{text.npos}};
    const auto leaveTo = [&](std::size_t place) {
        while (place >= levels.back().end) {
            TagNode tag = std::move(levels.back().tag);
            levels.pop_back();
            if (levels.size() == 1) {
                visit(tag);
            } else {
                levels.back().tag.tags.push_back(std::move(tag));
            }
        }
    };
    for (const TagSpan& span : findMarkerPairs(text)) {
        leaveTo(span.open);
        if (!span.complete()) {
            unvisited.unclosed.push_back(span.open + std::size_t{1});
            levels.back().resume = span.open + kClosingMarker.size();
        } else if (levels.size() > UnvisitedTags::maximalDepth) {
            ++unvisited.tooDeep;
        } else if (span.open >= levels.back().resume) {
            levels.push_back({span.close, parseTag(services, text, span)});
        }
    }
    leaveTo(text.size());
    return unvisited;
}

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
