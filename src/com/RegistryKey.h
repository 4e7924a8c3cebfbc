#pragma once

#include <string>

#include "platform/win32/Windows.h"

namespace velmor::com {

// Throws Failure unless the status is ERROR_SUCCESS.
void checkRegistry(LSTATUS status);

// A key for writing and emptying, open until the end of the scope.
class RegistryKey {
public:
    // Makes the key if it is absent. Throws Failure.
    RegistryKey(HKEY parent, const std::wstring& path);
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey();

    HKEY get() const noexcept { return key_; }
    void setDefault(const std::wstring& value) { set(nullptr, value); }
    void set(const wchar_t* name, const std::wstring& value);

    // Removes a key with its subkeys; an absent key is not an error.
    static void removeTree(HKEY parent, const std::wstring& path);

private:
    HKEY key_ = nullptr;
};

}  // namespace velmor::com
