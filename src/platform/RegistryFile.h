#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/RegistryTree.h"
#include "platform/Services.h"

namespace velmor::platform {

// What a .reg file does to the registry that it is imported into: its lines come in order, and a
// later one wins.
//
// Read are UTF-16 with a byte order mark and UTF-8, both under the header "Windows Registry Editor
// Version 5.00", and the ANSI code page under "REGEDIT4" (also under the newer header, when the
// bytes are no UTF-8). Kept are the string values (plain text, "hex(1):" and "hex(2):" with
// continued lines) below HKEY_LOCAL_MACHINE; HKEY_CLASSES_ROOT is its SOFTWARE\Classes. Values of
// other types are no string values; keys of other roots are passed over. "[-key]" and "name"=-
// delete. Quoted text may run over line ends, as registry editors write it.
class RegistryScript {
public:
    // Called in the order of the lines. `name` is empty for a key's default value.
    class Target {
    public:
        virtual ~Target() = default;
        virtual void addKey(std::u16string_view key) = 0;
        virtual void removeKey(std::u16string_view key) = 0;
        virtual void set(std::u16string_view key, std::u16string_view name, std::u16string_view value) = 0;
        virtual void removeValue(std::u16string_view key, std::u16string_view name) = 0;
    };

    // Lines that cannot be read are left out, and told of: "line 12: ...", the first 20 of them.
    static std::vector<std::u16string> run(std::string_view bytes, Target& target);
};

// The registry as a 32-bit program sees it, from a .reg file. A key of the 32-bit part
// ("SOFTWARE\WOW6432Node\X", "SOFTWARE\Classes\WOW6432Node\X") is found at "SOFTWARE\X" and
// "SOFTWARE\Classes\X" too, and comes before a key that was written there.
class RegistryFile : public Registry, private RegistryScript::Target {
public:
    RegistryFile() = default;  // empty
    explicit RegistryFile(std::string_view bytes);

    const std::vector<std::u16string>& warnings() const noexcept { return warnings_; }

    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override;
    std::vector<std::u16string> valueNames(std::u16string_view key) const override;
    std::vector<std::u16string> subkeys(std::u16string_view key) const override;

private:
    void addKey(std::u16string_view key) override;
    void removeKey(std::u16string_view key) override;
    void set(std::u16string_view key, std::u16string_view name, std::u16string_view value) override;
    void removeValue(std::u16string_view key, std::u16string_view name) override;

    RegistryTree narrow_;  // what was written below WOW6432Node, without that part
    RegistryTree wide_;
    std::vector<std::u16string> warnings_;
};

}  // namespace velmor::platform
