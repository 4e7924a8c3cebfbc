#pragma once

#include "platform/Services.h"

namespace velmor::platform {

// HKEY_LOCAL_MACHINE, in the view of 32-bit programs.
class MachineRegistry : public Registry {
public:
    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override;
    std::vector<std::u16string> subkeys(std::u16string_view key) const override;
};

}  // namespace velmor::platform
