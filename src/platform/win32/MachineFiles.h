#pragma once

#include "platform/Services.h"

namespace velmor::platform {

class MachineFiles : public Files {
public:
    bool exists(std::u16string_view path) const override;
    std::optional<std::string> read(std::u16string_view path) const override;
    // A device (NUL, CON) is written to directly.
    bool write(std::u16string_view path, std::string_view bytes) override;
    bool create(std::u16string_view path) override;
    bool append(std::u16string_view path, std::string_view bytes) override;
    bool remove(std::u16string_view path) override;
    bool makeFolder(std::u16string_view path) override;
};

}  // namespace velmor::platform
