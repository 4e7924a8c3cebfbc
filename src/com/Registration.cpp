#include "com/Registration.h"

#include <cwchar>
#include <string>

#include "com/TypeLibrary.h"
#include "platform/Machine.h"
#include "platform/win32/Failure.h"
#include "platform/win32/RegistryViews.h"
#include "platform/win32/WideText.h"

namespace velmor::com {

namespace {

void checkRegistry(LSTATUS status) {
    if (status != ERROR_SUCCESS) throw platform::Failure{HRESULT_FROM_WIN32(static_cast<DWORD>(status))};
}

// The registry's classes of one audience. Class identifiers are apart for programs of 32 and of 64 bits; class names
// and type libraries are shared.
class Classes {
public:
    explicit Classes(Audience audience)
        : root_(audience == Audience::everyone ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER) {
        // RegDeleteTree wants more than KEY_WRITE of the key that it is given.
        constexpr REGSAM rights = KEY_WRITE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | DELETE;
        checkRegistry(RegCreateKeyExW(root_, classesPath, 0, nullptr, 0, rights, nullptr, &key_, nullptr));
    }
    Classes(const Classes&) = delete;
    Classes& operator=(const Classes&) = delete;
    ~Classes() { RegCloseKey(key_); }

    HKEY get() const noexcept { return key_; }
    bool has(const std::wstring& key, REGSAM view = platform::ownView) const {
        HKEY found = nullptr;
        const std::wstring path = std::wstring(classesPath) + L"\\" + key;
        if (RegOpenKeyExW(root_, path.c_str(), 0, KEY_READ | view, &found) != ERROR_SUCCESS) return false;
        RegCloseKey(found);
        return true;
    }
    // Makes the key if it is absent.
    void set(const std::wstring& key, const std::wstring& value, const wchar_t* name = nullptr) const {
        const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        checkRegistry(RegSetKeyValueW(key_, key.c_str(), name, REG_SZ, value.c_str(), bytes));
    }
    // With its subkeys; an absent key is not an error.
    void remove(const std::wstring& key) const {
        const LSTATUS status = RegDeleteTreeW(key_, key.c_str());
        if (status != ERROR_FILE_NOT_FOUND) checkRegistry(status);
    }

private:
    static constexpr wchar_t classesPath[] = L"Software\\Classes";

    HKEY root_;
    HKEY key_ = nullptr;
};

// The platform registers type libraries below HKEY_CLASSES_ROOT, a merged view of every user's classes and the current
// user's. While this lives, the process sees one of them there.
class ClassesRoot {
public:
    explicit ClassesRoot(const Classes& classes) {
        checkRegistry(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.get()));
    }
    ClassesRoot(const ClassesRoot&) = delete;
    ClassesRoot& operator=(const ClassesRoot&) = delete;
    ~ClassesRoot() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
};

std::wstring textOf(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

std::wstring classKey(const ServedClass& served) {
    return L"CLSID\\" + textOf(served.id);
}

std::wstring versionedName(const ServedClass& served) {
    const std::wstring version = served.version;
    return std::wstring(served.className) + L"." + version.substr(0, version.find(L'.'));
}

void writeClass(const Classes& classes, const ServedClass& served, const GUID* typeLibrary) {
    const std::wstring key = classKey(served), name = served.className, versioned = versionedName(served);
    classes.set(key, served.description);
    classes.set(key + L"\\InprocServer32", platform::wide(platform::ownFile()));
    classes.set(key + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
    classes.set(key + L"\\ProgID", versioned);
    classes.set(key + L"\\VersionIndependentProgID", name);
    classes.set(key + L"\\Version", served.version);
    classes.set(key + L"\\Programmable", L"");
    if (typeLibrary) classes.set(key + L"\\TypeLib", textOf(*typeLibrary));
    for (const std::wstring& each : {name, versioned}) {
        classes.set(each, served.description);
        classes.set(each + L"\\CLSID", textOf(served.id));
    }
    classes.set(name + L"\\CurVer", versioned);
}

// Whether the same component of the other bitness is registered. On a 32-bit Windows this is the class itself.
bool hasPartner(const Classes& classes, const ServedClass& served) {
    return classes.has(classKey(served), platform::otherView);
}

void removeClass(const Classes& classes, const ServedClass& served) {
    classes.remove(classKey(served));
    if (hasPartner(classes, served)) return;
    classes.remove(served.className);
    classes.remove(versionedName(served));
}

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* lent = nullptr;
    platform::check(library.GetLibAttr(&lent));
    const TLIBATTR attributes = *lent;
    library.ReleaseTLibAttr(lent);
    return attributes;
}

void writeTypeLibrary(const Classes& classes) {
    const ClassesRoot root(classes);
    std::wstring path = platform::wide(platform::ownFile());
    platform::check(RegisterTypeLib(&typeLibrary(), path.data(), nullptr));
}

std::wstring hexadecimal(WORD number) {
    wchar_t text[5];
    swprintf(text, 5, L"%x", number);
    return text;
}

// Interfaces are registered for both bitnesses together, and remain while a partner needs them.
void removeTypeLibrary(const Classes& classes, bool hasPartner) {
    const TLIBATTR own = attributesOf(typeLibrary());
    const std::wstring key = L"TypeLib\\" + textOf(own.guid) + L"\\" + hexadecimal(own.wMajorVerNum) + L"." +
                             hexadecimal(own.wMinorVerNum) + L"\\0\\" + (platform::is64Bit ? L"win64" : L"win32");
    if (hasPartner) return classes.remove(key);
    if (!classes.has(key)) return;
    const ClassesRoot root(classes);
    platform::check(UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind));
}

std::wstring applicationKey(const Server& server) {
    return L"AppID\\" + textOf(server.classes.front().id);
}

void writeSurrogate(const Classes& classes, const Server& server) {
    classes.set(applicationKey(server), L"", L"DllSurrogate");
    for (const ServedClass& served : server.classes) {
        classes.set(classKey(served), textOf(server.classes.front().id), L"AppID");
    }
}

void writeServer(const Classes& classes, const Server& server, Surrogate surrogate) {
    for (const ServedClass& served : server.classes) writeClass(classes, served, server.typeLibrary);
    if (server.typeLibrary) writeTypeLibrary(classes);
    if (surrogate == Surrogate::system) writeSurrogate(classes, server);
}

// The first failure; every step is taken.
HRESULT removeServer(const Classes& classes, const Server& server) {
    HRESULT outcome = S_OK;
    const auto take = [&](auto&& step) {
        const HRESULT code = platform::outcomeOf(step);
        if (SUCCEEDED(outcome)) outcome = code;
    };
    bool isShared = false;
    for (const ServedClass& served : server.classes) {
        take([&] { removeClass(classes, served); });
        isShared = isShared || hasPartner(classes, served);
    }
    if (!isShared) take([&] { classes.remove(applicationKey(server)); });
    if (server.typeLibrary) take([&] { removeTypeLibrary(classes, isShared); });
    return outcome;
}

}  // namespace

void registerServer(const Server& server, Audience audience, Surrogate surrogate) {
    const Classes classes(audience);
    const HRESULT written = platform::outcomeOf([&] { writeServer(classes, server, surrogate); });
    if (FAILED(written)) removeServer(classes, server);  // as far as it goes: the first failure tells more
    platform::check(written);
}

void unregisterServer(const Server& server, Audience audience) {
    platform::check(removeServer(Classes(audience), server));
}

}  // namespace velmor::com
