#include "cli/MergeReportFile.h"

#include <iterator>

#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr const char* outcomes[] = {"kept", "shared", "added", "renamed", "direct", "replaced"};

Json entriesJson(const std::vector<MergedEntry>& entries) {
    Json list = Json::array();
    for (const MergedEntry& entry : entries) {
        Json json = {{"outcome", outcomes[static_cast<std::size_t>(entry.outcome)]}};
        if (!entry.name.empty()) json["name"] = toUtf8(entry.name);
        if (entry.newName != entry.name) json["newName"] = toUtf8(entry.newName);
        json["number"] = toUtf8(entry.number);
        if (entry.newNumber != entry.number) json["newNumber"] = toUtf8(entry.newNumber);
        list.push_back(std::move(json));
    }
    return list;
}

}  // namespace

// Documents within the inputs have no name.
Json jsonOf(const MergeReport& report, const std::vector<std::string>& inputs) {
    const bool areInputs = report.documents.size() == inputs.size();
    Json documents = Json::array();
    for (std::size_t index = 0; index < report.documents.size(); ++index) {
        const MergeReport::Document& document = report.documents[index];
        Json json = {{"input", areInputs || index == 0 ? Json(inputs[index]) : Json(nullptr)},
                     {"fonts", entriesJson(document.fonts)},
                     {"colours", entriesJson(document.colours)},
                     {"styles", entriesJson(document.styles)},
                     {"lists", entriesJson(document.lists)},
                     {"listOverrides", entriesJson(document.listOverrides)}};
        documents.push_back(std::move(json));
    }
    return {{"inputs", inputs}, {"documents", std::move(documents)}};
}

}  // namespace velmor::cli
