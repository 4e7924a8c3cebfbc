#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "cli/JsonText.h"
#include "platform/Services.h"

namespace velmor::cli {

// A JSON file that a command reads, in UTF-8.
struct JsonFile {
    std::string name;  // for messages
    std::string text;
    Json json;

    // Throws Failure (exitFile): with line and column of the place when the text is not JSON.
    static JsonFile read(const platform::Files& files, const std::string& name);
    static JsonFile parse(std::string_view bytes, const std::string& name);
    // Throws Failure (exitFile) with line and column of the byte `index` of the text.
    [[noreturn]] void refuse(std::size_t index, const std::string& reason) const;
};

}  // namespace velmor::cli
