#include "cli/render/RecordFeed.h"

#include <algorithm>

#include "cli/render/Interruption.h"

namespace velmor::cli {

RecordChoice partOf(const std::string& data, const DataForm& form, std::uint64_t part, std::uint64_t parts) {
    const auto reader = openRecords(data, form);
    Record record;
    std::uint64_t count = 0;
    while (!Interruption::requested() && reader->next(record)) ++count;
    RecordChoice choice;
    const auto endOf = [&](std::uint64_t number) { return count / parts * number + count % parts * number / parts; };
    choice.first = endOf(part - 1) + 1;
    choice.last = endOf(part);
    return choice;
}

bool RecordFeed::next(Record& record) {
    while (given_ < choice_.limit && number_ < choice_.last && reader_.next(record)) {
        record.number = ++number_;
        if (number_ < choice_.first || !isChosen(record)) continue;
        ++given_;
        return true;
    }
    return false;
}

bool RecordFeed::isChosen(const Record& record) const {
    if (choice_.where.empty() || !record.failure.empty()) return true;
    privProperties properties(services_);
    try {
        reader_.addTo(properties, record);
    } catch (const RecordFailure&) {
        return true;
    }
    return std::all_of(choice_.where.begin(), choice_.where.end(), [&](const auto& condition) {
        const PropertyRef property = properties.Item(std::u16string_view(condition.first));
        return property && property->ValueStr() == condition.second;
    });
}

double RecordFeed::progress() const {
    const auto chosen = static_cast<double>(choice_.last - choice_.first + 1);
    const bool isPart = choice_.last != UINT64_MAX && chosen > 0;
    if (isPart) return number_ < choice_.first ? 0 : static_cast<double>(number_ - choice_.first + 1) / chosen;
    if (choice_.limit != UINT64_MAX) return static_cast<double>(given_) / static_cast<double>(choice_.limit);
    return reader_.progress().value_or(-1);
}

}  // namespace velmor::cli
