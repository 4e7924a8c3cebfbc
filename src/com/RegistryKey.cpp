#include "com/RegistryKey.h"

#include "platform/win32/Failure.h"

namespace velmor::com {

namespace {

// RegDeleteTree wants more than KEY_WRITE of the key that it is given.
constexpr REGSAM kRights = KEY_WRITE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | DELETE;

}  // namespace

void checkRegistry(LSTATUS status) {
    if (status != ERROR_SUCCESS) throw platform::Failure{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
}

RegistryKey::RegistryKey(HKEY parent, const std::wstring& path) {
    checkRegistry(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, kRights, nullptr, &key_, nullptr));
}

RegistryKey::~RegistryKey() {
    RegCloseKey(key_);
}

void RegistryKey::set(const wchar_t* name, const std::wstring& value) {
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    checkRegistry(RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes));
}

void RegistryKey::removeTree(HKEY parent, const std::wstring& path) {
    const LSTATUS status = RegDeleteTreeW(parent, path.c_str());
    if (status != ERROR_FILE_NOT_FOUND) checkRegistry(status);
}

}  // namespace velmor::com
