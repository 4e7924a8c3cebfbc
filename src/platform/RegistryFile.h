#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/RegistryTree.h"

namespace velmor::platform {

// The registry as a 32-bit program sees it, from a .reg file. A key of the 32-bit
// part ("SOFTWARE\WOW6432Node\X", "SOFTWARE\Classes\WOW6432Node\X") is also found at "SOFTWARE\X" and
// "SOFTWARE\Classes\X", and precedes a key that was written there.
//
// The bytes are UTF-16 with a byte order mark or UTF-8, both under the header "Windows Registry Editor
// Version 5.00", or in the ANSI code page under "REGEDIT4" (also under the newer header if they are not
// UTF-8). A later line wins. String values (plain text, "hex(1):" and "hex(2):" with continued lines) below
// HKEY_LOCAL_MACHINE are kept; HKEY_CLASSES_ROOT is its SOFTWARE\Classes. A value of another type
// removes the string value of that name; keys of other roots are ignored. "[-key]" and "name"=-
// delete. Quoted text may run over line ends, as registry editors write it.
class RegistryFile : public Registry {
public:
    RegistryFile() = default;  // empty
    explicit RegistryFile(std::string_view bytes);

    // Lines that cannot be read are ignored, and the first 20 of them are reported: "line 12: ...".
    const std::vector<std::u16string>& warnings() const noexcept { return warnings_; }

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override {
        return names(key, &RegistryTree::valueNames);
    }
    std::vector<std::u16string> subkeys(std::u16string_view key) const override {
        return names(key, &RegistryTree::subkeys);
    }

private:
    using List = std::vector<std::u16string> (RegistryTree::*)(std::u16string_view key) const;
    std::vector<std::u16string> names(std::u16string_view key, List list) const;

    RegistryTree narrow_;  // what was written below WOW6432Node, without that part
    RegistryTree wide_;
    std::vector<std::u16string> warnings_;
};

}  // namespace velmor::platform
