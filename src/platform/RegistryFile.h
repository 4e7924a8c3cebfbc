#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/RegistryTree.h"

namespace velmor::platform {

// The registry as a 32-bit program sees it, from a .reg file (RegistryScript.h). A key of the 32-bit
// part ("SOFTWARE\WOW6432Node\X", "SOFTWARE\Classes\WOW6432Node\X") is also found at "SOFTWARE\X" and
// "SOFTWARE\Classes\X", and precedes a key that was written there.
class RegistryFile : public Registry {
public:
    RegistryFile() = default;  // empty
    explicit RegistryFile(std::string_view bytes);

    const std::vector<std::u16string>& warnings() const noexcept { return warnings_; }

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override;
    std::vector<std::u16string> subkeys(std::u16string_view key) const override;

private:
    RegistryTree narrow_;  // what was written below WOW6432Node, without that part
    RegistryTree wide_;
    std::vector<std::u16string> warnings_;
};

}  // namespace velmor::platform
