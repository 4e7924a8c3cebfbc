#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/JsonText.h"
#include "cli/ReportCollector.h"

namespace velmor::cli {

// The properties of a report's page: those that are set, and those that the evaluation asked for in vain. Calls go in
// the order of the members.
class ReportProperties {
public:
    // Those that are not known yet; "given" before evaluation, "template" after it.
    void add(const privProperties& properties, const char* origin);
    void addReads(const std::vector<ReportCollector::Property>& asked);
    // Of each: "name", "value" (as given, if it was), "origin" ("given", "template" or "absent"), "found" and "missed"
    // (by how many tags), "tags", "isRead" and "similar", the name of one that is absent for one that nobody reads, and
    // the reverse.
    Json json() &&;

private:
    static constexpr std::size_t mostRows = 10'000;
    static constexpr std::size_t mostSuggestions = 500;  // each costs a comparison with all other names

    Json rows_ = Json::array();
    std::unordered_map<std::u16string, std::size_t> known_;  // by name in upper case
};

}  // namespace velmor::cli
