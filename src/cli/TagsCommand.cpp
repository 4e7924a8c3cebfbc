#include "cli/TagsCommand.h"

#include "automation/Convert.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/TagTree.h"
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

// One line for each top-level tag.
class JsonPrinter final : public TagVisitor {
public:
    JsonPrinter() { print("{\"tags\": ["); }

    void enter(const TagNode& tag) override {
        print(isFirst_ ? "" : ",");
        if (depth_++ == 0) print("\n");
        isFirst_ = true;
        std::string json = jsonText(withoutTags(tag));
        json.back() = ',';
        print(json + "\"tags\":[");
    }

    void leave() override {
        print("]}");
        isFirst_ = false;
        --depth_;
    }

    void end(const UnvisitedTags& unvisited) {
        print("],\n\"unclosed\": " + jsonText(unvisited.unclosed) + ",\n\"tooDeep\": " + jsonText(unvisited.tooDeep) +
              "}\n");
    }

private:
    static Json withoutTags(const TagNode& tag) {
        Json parameters = Json::array();
        for (const auto& [name, value] : tag.parameters) {
            parameters.push_back({{"name", toUtf8(name)}, {"value", valueJson(value)}});
        }
        return {{"position", tag.position},
                {"length", tag.length},
                {"handler", toUtf8(tag.handler)},
                {"command", toUtf8(tag.command)},
                {"commandValue", valueJson(tag.commandValue)},
                {"parameters", std::move(parameters)}};
    }

    bool isFirst_ = true;  // of the tags at its level
    std::size_t depth_ = 0;
};

// In the list each text is one line, and a long one is shortened.
std::string shown(std::u16string_view text) {
    return toUtf8(onOneLine(text, 200));
}

// " = value"; nothing for the long 0, the value of a name alone.
std::string valueText(const Variant& value) {
    if (value.isEmpty() || value.identical(Variant(std::int32_t{0}))) return {};
    const std::string text = shown(automation::toText(value).value_or(u""));
    return " = " + (value.isString() ? '"' + text + '"' : text);
}

class ListPrinter final : public TagVisitor {
public:
    void enter(const TagNode& tag) override {
        std::string lines = indent_ + std::to_string(tag.position) + "  ";
        lines += tag.handler.empty() ? "(no handler)" : shown(tag.handler) + " > " + shown(tag.command);
        lines += valueText(tag.commandValue) + "\n";
        for (const auto& [name, value] : tag.parameters) {
            lines += indent_ + "      " + shown(name) + valueText(value) + "\n";
        }
        print(lines);
        indent_ += "    ";
    }

    void leave() override { indent_.resize(indent_.size() - 4); }

private:
    std::string indent_;
};

UnvisitedTags printTags(platform::Services& services, std::u16string_view text, bool json) {
    if (!json) {
        ListPrinter printer;
        return visitTags(services, text, printer);
    }
    JsonPrinter printer;
    UnvisitedTags unvisited = visitTags(services, text, printer);
    printer.end(unvisited);
    return unvisited;
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
