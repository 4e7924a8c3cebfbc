#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "properties/privProperties.h"

namespace velmor::cli {

// The pattern of --each: "out/{Id}-{Name}.rtf". {NAME} is the property of that name, {#} the number of the record,
// {######} the same with zeros before it up to that width; {{ and }} are braces.
//
// What comes from data stays within one part of the path: characters that a file name of Windows cannot have, slashes
// among them, become "_"; so does a dot or blank at the end of a part. A part that is a device's name on Windows (CON,
// LPT1.rtf) gets "_" before it. So no name from data leaves the folder that the pattern names, on any system.
class FileNames {
public:
    // Throws Failure (exitUsage) for a pattern that is faulty, or names nothing of the record.
    explicit FileNames(const std::string& pattern);

    // The path. Throws RecordFailure when a property is absent, when a part of the path would be empty, or longer than
    // 255 bytes.
    std::u16string of(const privProperties& properties, std::uint64_t record) const;

private:
    struct Piece {
        enum class Kind { text, property, number } kind;
        std::u16string text;    // or the property's name
        std::size_t width = 0;  // of the number
    };

    void addText(std::u16string_view text);
    void addPlaceholder(std::u16string_view name);

    std::vector<Piece> pieces_;
};

}  // namespace velmor::cli
