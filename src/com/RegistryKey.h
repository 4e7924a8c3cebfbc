#pragma once

#include <string>

#include "platform/win32/Windows.h"

namespace velmor::com {

// A key that is written to, from making it to the end of the scope.
class RegistryKey {
public:
    // Makes the key where it is not there. Throws Failure.
    RegistryKey(HKEY parent, const std::wstring& path);
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey();

    HKEY get() const noexcept { return key_; }
    void setDefault(const std::wstring& value) { set(nullptr, value); }
    void set(const wchar_t* name, const std::wstring& value);

    // With everything below it; a key that is not there is no failure.
    static void removeTree(HKEY parent, const std::wstring& path);

private:
    HKEY key_ = nullptr;
};

}  // namespace velmor::com
