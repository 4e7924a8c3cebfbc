#include <memory>
#include <set>
#include <type_traits>

#include "platform/Machine.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Windows.h"
#include "text/Compare.h"
//
#include "extension/ClassRegistry.h"  // after windows.h

namespace velmor::platform {
namespace {

constexpr DWORD longestName = 16384;

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

// Null for an absent key.
Key openKey(std::u16string_view path, REGSAM view) {
    while (!path.empty() && path.back() == u'\\') path.remove_suffix(1);
    HKEY key = nullptr;
    if (holdsZero(path)) return nullptr;
    const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(path).c_str(), 0, KEY_READ | view, &key);
    return Key(status == ERROR_SUCCESS ? key : nullptr);
}

bool isText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ;
}

std::optional<std::u16string> readText(HKEY key, const std::wstring& name) {
    constexpr DWORD texts = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
    std::wstring data(128, L'\0');
    while (true) {
        DWORD bytes = static_cast<DWORD>(data.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(key, nullptr, name.c_str(), texts, nullptr, data.data(), &bytes);
        if (status == ERROR_SUCCESS) return fromWide(data.substr(0, data.find(L'\0')));
        if (status != ERROR_MORE_DATA) return std::nullopt;
        data.resize(bytes / sizeof(wchar_t) + 1);
    }
}

// The names that `enumerate` gives for a key, those of the other view last; it passes over a name by
// ERROR_UNSUPPORTED_TYPE.
template <class Enumerate>
std::vector<std::u16string> namesInBothViews(std::u16string_view key, Enumerate enumerate) {
    std::vector<std::u16string> names;
    std::set<std::u16string> seen;  // in lower case
    std::wstring buffer(longestName, L'\0');
    for (const REGSAM view : {com::ownView, com::otherView}) {
        const Key open = openKey(key, view);
        for (DWORD i = 0; open; ++i) {
            DWORD length = longestName;
            const LSTATUS status = enumerate(open.get(), i, buffer.data(), &length);
            if (status == ERROR_UNSUPPORTED_TYPE) continue;
            if (status != ERROR_SUCCESS) break;
            std::u16string name = fromWide({buffer.data(), length});
            if (seen.insert(lowerCase(name)).second) names.push_back(std::move(name));
        }
    }
    return names;
}

LSTATUS enumerateTexts(HKEY key, DWORD index, wchar_t* name, DWORD* length) {
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key, index, name, length, nullptr, &type, nullptr, nullptr);
    return status == ERROR_SUCCESS && !isText(type) ? ERROR_UNSUPPORTED_TYPE : status;
}

LSTATUS enumerateKeys(HKEY key, DWORD index, wchar_t* name, DWORD* length) {
    return RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

// HKEY_LOCAL_MACHINE: what this program's own view does not have is looked up in the other one.
class MachineRegistry : public Registry {
public:
    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override {
        if (holdsZero(name)) return std::nullopt;
        for (const REGSAM view : {com::ownView, com::otherView}) {
            const Key open = openKey(key, view);
            auto text = open ? readText(open.get(), wide(name)) : std::nullopt;
            if (text) return text;
        }
        return std::nullopt;
    }

    std::vector<std::u16string> valueNames(std::u16string_view key) const override {
        return namesInBothViews(key, enumerateTexts);
    }

    std::vector<std::u16string> subkeys(std::u16string_view key) const override {
        return namesInBothViews(key, enumerateKeys);
    }
};

}  // namespace

std::u16string usualRegistryFile(const Files&) {
    return {};
}

std::unique_ptr<Registry> machineRegistry() {
    return std::make_unique<MachineRegistry>();
}

}  // namespace velmor::platform
