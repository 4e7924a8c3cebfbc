#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::cli {

// The bytes of a record, or of the text of one that is JSON. A longer one fails; its rest is skipped, not held.
inline constexpr std::size_t longestRecord = std::size_t{1} << 24;
inline constexpr const char* tooLong = "the record is longer than 16 MB";

// Why one record has no letter. The others are made.
class RecordFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class CellType : std::uint8_t { text, integer, real, null };

// A record as it was read; its reader makes properties of it (RecordReader::addTo).
struct Record {
    struct Cell {
        std::size_t end = 0;  // in `bytes`; it begins where the one before ends
        CellType type = CellType::text;
    };

    std::uint64_t number = 0;  // in the data, from 1
    std::uint64_t line = 0;    // where it begins, from 1; 0 if the data has no lines
    std::string bytes;
    std::vector<Cell> cells;  // of a row; empty for JSON
    std::string failure;      // why it cannot be used; empty if it can

    // Past the longest record, nothing but the failure.
    void append(std::string_view more) {
        const std::size_t room = longestRecord - bytes.size();
        bytes += more.substr(0, room);
        if (more.size() > room && failure.empty()) failure = tooLong;
    }
    void append(int byte) {
        const char each = static_cast<char>(byte);
        append(std::string_view(&each, 1));
    }
    void clear() {
        bytes.clear();
        cells.clear();
        failure.clear();
    }
    std::string_view cell(std::size_t index) const {
        const std::size_t begin = index == 0 ? 0 : cells[index - 1].end;
        return std::string_view(bytes).substr(begin, cells[index].end - begin);
    }
};

}  // namespace velmor::cli
