#include "com/Registration.h"

#include <cwchar>
#include <string>

#include "com/TypeLibrary.h"
#include "platform/win32/Failure.h"
//
#include "extension/ClassRegistry.h"  // after windows.h

namespace velmor::com {

namespace {

// The platform registers type libraries below HKEY_CLASSES_ROOT, a merged view of every user's classes and the current
// user's. While this lives, the process sees those of one audience there. Throws Failure without the right to change
// them.
class ClassesRoot {
public:
    explicit ClassesRoot(HKEY root) {
        constexpr REGSAM rights = KEY_WRITE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | DELETE;
        check(RegCreateKeyExW(root, L"Software\\Classes", 0, nullptr, 0, rights, nullptr, &key_, nullptr));
        check(RegOverridePredefKey(HKEY_CLASSES_ROOT, key_));
    }
    ClassesRoot(const ClassesRoot&) = delete;
    ClassesRoot& operator=(const ClassesRoot&) = delete;
    ~ClassesRoot() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(key_);
    }

private:
    static void check(LSTATUS status) { platform::check(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

    HKEY key_ = nullptr;
};

RegisteredClass registeredClass(const ServedClass& served) {
    const std::wstring name = served.className, version = served.version;
    return {textOf(served.id), {name + L"." + version.substr(0, version.find(L'.')), name}, served.description};
}

void writeClass(ClassRegistry& classes, const ServedClass& served, const GUID* typeLibrary) {
    const RegisteredClass described = registeredClass(served);
    const std::wstring key = classKey(described.identifier), name = served.className;
    classes.write(described);
    classes.set(key + L"\\VersionIndependentProgID", name);
    classes.set(key + L"\\Version", served.version);
    classes.set(key + L"\\Programmable", L"");
    if (typeLibrary) classes.set(key + L"\\TypeLib", textOf(*typeLibrary));
    classes.set(name + L"\\CurVer", described.names.front());
}

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* lent = nullptr;
    platform::check(library.GetLibAttr(&lent));
    const TLIBATTR attributes = *lent;
    library.ReleaseTLibAttr(lent);
    return attributes;
}

void writeTypeLibrary() {
    std::wstring path = ownFile();
    platform::check(RegisterTypeLib(&typeLibrary(), path.data(), nullptr));
}

std::wstring hexadecimal(WORD number) {
    wchar_t text[5];
    swprintf(text, 5, L"%x", number);
    return text;
}

// Interfaces are registered for both bitnesses together, and remain while a partner needs them.
void removeTypeLibrary(ClassRegistry& classes, bool hasPartner) {
    const TLIBATTR own = attributesOf(typeLibrary());
    const std::wstring key = L"TypeLib\\" + textOf(own.guid) + L"\\" + hexadecimal(own.wMajorVerNum) + L"." +
                             hexadecimal(own.wMinorVerNum) + L"\\0\\" + (is64Bit ? L"win64" : L"win32");
    if (hasPartner) return classes.remove(key);
    if (!classes.has(key)) return;
    platform::check(UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind));
}

std::wstring applicationKey(const Server& server) {
    return L"AppID\\" + textOf(server.classes.front().id);
}

void writeSurrogate(ClassRegistry& classes, const Server& server) {
    classes.set(applicationKey(server), L"", L"DllSurrogate");
    for (const ServedClass& served : server.classes) {
        classes.set(classKey(textOf(served.id)), textOf(server.classes.front().id), L"AppID");
    }
}

void writeServer(ClassRegistry& classes, const Server& server, Surrogate surrogate) {
    for (const ServedClass& served : server.classes) writeClass(classes, served, server.typeLibrary);
    if (server.typeLibrary) writeTypeLibrary();
    if (surrogate == Surrogate::system) writeSurrogate(classes, server);
}

void removeServer(ClassRegistry& classes, const Server& server) {
    bool isShared = false;
    for (const ServedClass& served : server.classes) {
        const RegisteredClass described = registeredClass(served);
        classes.remove(described);
        isShared = isShared || classes.hasPartner(described);
    }
    if (!isShared) classes.remove(applicationKey(server));
    if (server.typeLibrary) classes.take(platform::outcomeOf([&] { removeTypeLibrary(classes, isShared); }));
}

}  // namespace

void registerServer(const Server& server, HKEY root, Surrogate surrogate) {
    const ClassesRoot typeLibraries(root);
    ClassRegistry classes(root);
    classes.take(platform::outcomeOf([&] { writeServer(classes, server, surrogate); }));
    if (FAILED(classes.outcome())) removeServer(classes, server);  // as far as it goes: the first failure tells more
    platform::check(classes.outcome());
}

void unregisterServer(const Server& server, HKEY root) {
    const ClassesRoot typeLibraries(root);
    ClassRegistry classes(root);
    removeServer(classes, server);
    platform::check(classes.outcome());
}

}  // namespace velmor::com
