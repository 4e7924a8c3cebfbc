#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// SystemServices.h describes the paths.
class PosixFiles : public Files {
public:
    bool exists(std::u16string_view path) const override;
    std::optional<std::string> read(std::u16string_view path) const override;
    // A symbolic link is followed; permissions of a replaced file are kept. Other than
    // regular files (a terminal, a pipe, /dev/null), and descriptors of this process (/dev/stdout), are
    // written to directly. Signals that end the program wait until a regular file is written.
    bool write(std::u16string_view path, std::string_view bytes) override;
    bool create(std::u16string_view path) override;
    bool append(std::u16string_view path, std::string_view bytes) override;
    bool remove(std::u16string_view path) override;
    bool makeFolder(std::u16string_view path) override;
};

}  // namespace velmor::platform
