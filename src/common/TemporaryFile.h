#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor {

// The path of a new, empty file in the temporary folder: psPrefix, a unique name,
// psExtension (with its "."). The file is made in the same step, so that no other program can take
// the name. Nothing when it cannot be made.
std::optional<std::u16string> makeTemporaryFile(platform::Services& services, std::u16string_view psPrefix,
                                                std::u16string_view psExtension);

// A temporary file that lasts as long as this object.
class TemporaryFile {
public:
    TemporaryFile(platform::Services& services, std::u16string_view psPrefix, std::u16string_view psExtension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    explicit operator bool() const noexcept { return path_.has_value(); }  // false when it could not be made
    const std::u16string& path() const { return path_.value(); }

private:
    platform::Files& files_;
    std::optional<std::u16string> path_;
};

}  // namespace velmor
