#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/Cleaning.h"
#include "platform/Services.h"

namespace velmor::cli {

// Joins RTF documents that were cleaned by themselves, and cleans them in merge mode, as `velmor clean` does with its
// files.
class JoinedLetters {
public:
    JoinedLetters(platform::Services& services, Cleaning how) : services_(services), how_(std::move(how)) {
        how_.mergeMode = true;
    }

    // Throws Error 5 for a text that cannot be joined.
    void add(std::u16string document, const std::string& name);
    bool isEmpty() const noexcept { return documents_.empty(); }
    // Gives the document, piece by piece.
    void finish(const std::function<void(std::u16string_view)>& write);

private:
    platform::Services& services_;
    Cleaning how_;
    std::vector<std::u16string> documents_;
    std::vector<std::string> names_;
};

}  // namespace velmor::cli
