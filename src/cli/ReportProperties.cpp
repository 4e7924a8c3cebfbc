#include "cli/ReportProperties.h"

#include <string>
#include <utility>

#include "check/Suggestion.h"
#include "cli/LineText.h"
#include "properties/PropertyEnumerator.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

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

}  // namespace

// Adds a row for each property that has none.
void ReportProperties::add(const privProperties& properties, const char* origin) {
    const auto each = properties.NewEnum();
    while (const PropertyRef property = each->next()) {
        if (isOption(property->Name()) || rows_.size() == mostRows) continue;
        if (!known_.emplace(upperCase(property->Name()), rows_.size()).second) continue;
        rows_.push_back(rowOf(property->Name(), shown(property->ValueStr()), origin));
    }
}

void ReportProperties::addReads(const std::vector<ReportCollector::Property>& asked) {
    for (const ReportCollector::Property& each : asked) {
        const auto [row, isNew] = known_.try_emplace(upperCase(each.name), rows_.size());
        if (isNew && rows_.size() == mostRows) return;
        if (isNew) rows_.push_back(rowOf(each.name, nullptr, "absent"));
        addRead(rows_[row->second], each);
    }
}

Json ReportProperties::json() && {
    const std::vector<std::u16string> absent = namesOf(rows_, true), set = namesOf(rows_, false);
    std::size_t suggestions = 0;
    for (Json& row : rows_) {
        const bool isAbsent = row["origin"] == "absent";
        if ((!isAbsent && row["isRead"] == true) || suggestions++ >= mostSuggestions) continue;
        row["similar"] = toUtf8(nearestName(fromUtf8(row["name"].get<std::string>()), isAbsent ? set : absent));
    }
    return std::move(rows_);
}

}  // namespace velmor::cli
