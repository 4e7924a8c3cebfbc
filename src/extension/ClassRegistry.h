#pragma once

#include <string>
#include <vector>

// What every in-process server has: the component, and libraries of handlers, which get this header with
// ComHandler.cpp. Needs <windows.h> before it.
namespace velmor::com {

// A 64-bit Windows has a registry for 64-bit and one for 32-bit programs; parts of them are shared. A program sees its
// own. On a 32-bit Windows both are the same.
inline constexpr bool is64Bit = sizeof(void*) == 8;
inline constexpr REGSAM ownView = is64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
inline constexpr REGSAM otherView = is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

inline std::wstring textOf(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

// The file of the DLL or program that contains this code.
inline std::wstring ownFile() {
    constexpr DWORD longestPath = 32768;
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ownFile), &module);
    std::wstring path(longestPath, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), longestPath));
    return path;
}

// A class as the registry has it.
struct RegisteredClass {
    std::wstring identifier;          // in braces
    std::vector<std::wstring> names;  // under which it is created; its own comes first
    std::wstring description;         // what a registry editor shows
};

inline std::wstring classKey(const std::wstring& identifier) {
    return L"CLSID\\" + identifier;
}

// The registry's classes of one audience: HKEY_LOCAL_MACHINE has those of all users, HKEY_CURRENT_USER those of one.
// Class identifiers are apart for programs of 32 and of 64 bits; class names and type libraries are shared. Every step
// is taken; the outcome is the first failure.
class ClassRegistry {
public:
    explicit ClassRegistry(HKEY root) : root_(root) {}

    bool isMachine() const noexcept { return root_ == HKEY_LOCAL_MACHINE; }
    HRESULT outcome() const noexcept { return outcome_; }
    void take(HRESULT outcome) noexcept {
        if (SUCCEEDED(outcome_)) outcome_ = outcome;
    }
    void takeStatus(LSTATUS status) noexcept { take(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

    bool has(const std::wstring& key, REGSAM view = ownView) const {
        HKEY found = nullptr;
        if (RegOpenKeyExW(root_, path(key).c_str(), 0, KEY_READ | view, &found) != ERROR_SUCCESS) return false;
        RegCloseKey(found);
        return true;
    }
    // Makes the key if it is absent.
    void set(const std::wstring& key, const std::wstring& value, const wchar_t* name = nullptr) {
        setValue(path(key), name, value);
    }
    // With its subkeys; an absent key is not an error.
    void remove(const std::wstring& key) {
        const LSTATUS status = RegDeleteTreeW(root_, path(key).c_str());
        if (status != ERROR_FILE_NOT_FOUND) takeStatus(status);
    }
    // Of any key of the root.
    void setValue(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
        const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        takeStatus(RegSetKeyValueW(root_, key.c_str(), name, REG_SZ, value.c_str(), bytes));
    }

    void write(const RegisteredClass& described) {
        const std::wstring key = classKey(described.identifier);
        set(key, described.description);
        set(key + L"\\InprocServer32", ownFile());
        set(key + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
        set(key + L"\\ProgID", described.names.front());
        for (const std::wstring& name : described.names) {
            set(name, described.description);
            set(name + L"\\CLSID", described.identifier);
        }
    }
    // Whether the same class of the other bitness is registered. On a 32-bit Windows this is the class itself.
    bool hasPartner(const RegisteredClass& described) const { return has(classKey(described.identifier), otherView); }
    // The names stay while it is.
    void remove(const RegisteredClass& described) {
        remove(classKey(described.identifier));
        if (hasPartner(described)) return;
        for (const std::wstring& name : described.names) remove(name);
    }

private:
    static std::wstring path(const std::wstring& key) { return L"Software\\Classes\\" + key; }

    const HKEY root_;
    HRESULT outcome_ = S_OK;
};

}  // namespace velmor::com
