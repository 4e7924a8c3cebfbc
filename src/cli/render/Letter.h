#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor::cli {

// What became of a record.
struct Letter {
    std::uint64_t number = 0;          // of the record
    std::uint64_t line = 0;            // of the data; 0 if it has no lines
    std::u16string path;               // where it goes, if each letter is a file
    std::string bytes;                 // as it is written, except
    std::u16string document;           // an RTF document that is to be joined
    std::string failure;               // why there is no letter; empty if there is one
    std::vector<std::string> remarks;  // errors of the evaluation of a letter that was made
    bool isThere = false;              // it was made before: --continue

    bool isMade() const noexcept { return failure.empty() && !isThere; }
    std::size_t size() const noexcept { return bytes.size() + document.size() * sizeof(char16_t); }
};

}  // namespace velmor::cli
