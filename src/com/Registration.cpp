#include "com/Registration.h"

#include <string>

#include "com/Failure.h"
#include "com/Module.h"
#include "com/RegistryKey.h"
#include "platform/win32/ComPtr.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

constexpr wchar_t kClasses[] = L"Software\\Classes";

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

void writeName(HKEY classes, const std::wstring& name, const ServedClass& served) {
    RegistryKey key(classes, name);
    key.setDefault(served.description);
    RegistryKey(key.get(), L"CLSID").setDefault(textOf(served.id));
}

void writeClass(HKEY classes, const ServedClass& served, const GUID* typeLibrary) {
    const std::wstring versioned = versionedName(served);
    RegistryKey key(classes, classKey(served));
    key.setDefault(served.description);
    RegistryKey library(key.get(), L"InprocServer32");
    library.setDefault(Module::path());
    library.set(L"ThreadingModel", L"Apartment");
    RegistryKey(key.get(), L"ProgID").setDefault(versioned);
    RegistryKey(key.get(), L"VersionIndependentProgID").setDefault(served.className);
    RegistryKey(key.get(), L"Version").setDefault(served.version);
    RegistryKey(key.get(), L"Programmable");
    if (typeLibrary) RegistryKey(key.get(), L"TypeLib").setDefault(textOf(*typeLibrary));

    writeName(classes, served.className, served);
    RegistryKey(classes, std::wstring(served.className) + L"\\CurVer").setDefault(versioned);
    writeName(classes, versioned, served);
}

void removeClass(HKEY classes, const ServedClass& served) {
    RegistryKey::removeTree(classes, classKey(served));
    RegistryKey::removeTree(classes, served.className);
    RegistryKey::removeTree(classes, versionedName(served));
}

ComPtr<ITypeLib> ownTypeLibrary() {
    ComPtr<ITypeLib> library;
    check(LoadTypeLibEx(Module::path().c_str(), REGKIND_NONE, library.put()));
    return library;
}

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* lent = nullptr;
    check(library.GetLibAttr(&lent));
    const TLIBATTR attributes = *lent;
    library.ReleaseTLibAttr(lent);
    return attributes;
}

void removeTypeLibrary() {
    const TLIBATTR own = attributesOf(*ownTypeLibrary().get());
    BSTR path = nullptr;
    const bool registered =
        SUCCEEDED(QueryPathOfRegTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, &path));
    SysFreeString(path);
    if (!registered) return;
    check(UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind));
}

}  // namespace

void registerServer(const Server& server) {
    const RegistryKey classes(HKEY_LOCAL_MACHINE, kClasses);
    for (const ServedClass& served : server.classes) writeClass(classes.get(), served, server.typeLibrary);
    if (!server.typeLibrary) return;
    std::wstring path = Module::path();
    check(RegisterTypeLib(ownTypeLibrary().get(), path.data(), nullptr));
}

void unregisterServer(const Server& server) {
    const RegistryKey classes(HKEY_LOCAL_MACHINE, kClasses);
    for (const ServedClass& served : server.classes) removeClass(classes.get(), served);
    if (server.typeLibrary) removeTypeLibrary();
}

}  // namespace velmor::com
