#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "rtf/clean/JoinDocuments.h"

namespace velmor::cli {

// What messages call a letter that is joined with others.
inline constexpr const char* letterName = "the letter";

// What became of a record.
struct Letter {
    std::uint64_t number = 0;                  // of the record
    std::uint64_t line = 0;                    // of the data; 0 if it has no lines
    std::u16string path;                       // where it goes, if each letter is a file
    std::string bytes;                         // as it is written, except
    std::optional<JoinableDocument> document;  // one that is to be joined
    std::string failure;                       // why there is no letter; empty if there is one
    std::vector<std::string> remarks;          // errors of the evaluation of a letter that was made
    bool isThere = false;                      // it was made before: --continue

    bool isMade() const noexcept { return failure.empty() && !isThere; }
    std::size_t size() const noexcept {
        return bytes.size() + (document ? document->text.size() * sizeof(char16_t) : 0);
    }
};

}  // namespace velmor::cli
