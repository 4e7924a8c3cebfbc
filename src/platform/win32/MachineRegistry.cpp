#include "platform/Machine.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {
namespace {

constexpr DWORD kLongestName = 16384;

class Key {
public:
    explicit Key(std::u16string_view path) {
        while (!path.empty() && path.back() == u'\\') path.remove_suffix(1);
        if (holdsZero(path)) return;
        const LSTATUS status =
            RegOpenKeyExW(HKEY_LOCAL_MACHINE, wide(path).c_str(), 0, KEY_READ | KEY_WOW64_32KEY, &key_);
        if (status != ERROR_SUCCESS) key_ = nullptr;
    }
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    explicit operator bool() const { return key_ != nullptr; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

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

// HKEY_LOCAL_MACHINE, in the view of 32-bit programs.
class MachineRegistry : public Registry {
public:
    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override {
        const Key open(key);
        if (!open || holdsZero(name)) return std::nullopt;
        return readText(open.get(), wide(name));
    }

    std::vector<std::u16string> valueNames(std::u16string_view key) const override {
        std::vector<std::u16string> names;
        const Key open(key);
        std::wstring name(kLongestName, L'\0');
        for (DWORD i = 0; open; ++i) {
            DWORD length = kLongestName, type = 0;
            if (RegEnumValueW(open.get(), i, name.data(), &length, nullptr, &type, nullptr, nullptr) != ERROR_SUCCESS)
                break;
            if (isText(type)) names.push_back(fromWide({name.data(), length}));
        }
        return names;
    }

    std::vector<std::u16string> subkeys(std::u16string_view key) const override {
        std::vector<std::u16string> names;
        const Key open(key);
        std::wstring name(kLongestName, L'\0');
        for (DWORD i = 0; open; ++i) {
            DWORD length = kLongestName;
            if (RegEnumKeyExW(open.get(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                break;
            }
            names.push_back(fromWide({name.data(), length}));
        }
        return names;
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
