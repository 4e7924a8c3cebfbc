#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::cli {

// How the command line has documents cleaned.
struct Cleaning {
    bool exact = false;             // not tolerant
    std::string styles = "rename";  // of equal name and other definition: or "host", "keep"
    bool mergeMode = false;         // the text consists of joined documents
};

// Cleans in place; `report` receives what merging did. A text that still holds a tag stays as it is.
void clean(platform::Services& services, std::u16string& text, const Cleaning& how, MergeReport* report = nullptr);

// The same for the engine.
CleanOptions cleanOptions(const Cleaning& how);

// The position of the first tag that is left, from 1; 0 without one.
std::size_t positionOfTag(std::u16string_view text) noexcept;

}  // namespace velmor::cli
