#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/render/RecordReader.h"
#include "platform/Services.h"

namespace velmor::cli {

// Which records of the data are rendered. Numbers count all records of the data.
struct RecordChoice {
    std::vector<std::pair<std::u16string, std::u16string>> where;  // properties that must have these texts
    std::uint64_t first = 1;
    std::uint64_t last = UINT64_MAX;
    std::uint64_t limit = UINT64_MAX;  // so many of those that are chosen
};

// The part `part` of `parts` (from 1): records that follow each other, so that the parts in their order are the data.
// Reads the data once to count them.
RecordChoice partOf(const std::string& data, const DataForm& form, std::uint64_t part, std::uint64_t parts);

// Gives the chosen records, with their numbers. One thread at a time.
class RecordFeed {
public:
    // All must last.
    RecordFeed(RecordReader& reader, const RecordChoice& choice, platform::Services& services)
        : reader_(reader), choice_(choice), services_(services) {}

    // False at the end. A record that cannot be used is chosen, whatever it might have held.
    bool next(Record& record);
    // The part of the data that was read, from 0 to 1; negative if nobody knows.
    double progress() const;

private:
    bool isChosen(const Record& record) const;

    RecordReader& reader_;
    const RecordChoice& choice_;
    platform::Services& services_;
    std::uint64_t number_ = 0;
    std::uint64_t given_ = 0;
};

}  // namespace velmor::cli
