#include "com/Registration.h"

#include <string>

#include "com/Module.h"
#include "com/RegistryKey.h"
#include "com/TypeLibrary.h"
#include "platform/win32/Failure.h"

namespace velmor::com {

namespace {

RegistryKey classesOf(Audience audience) {
    return RegistryKey(audience == Audience::everyone ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, L"Software\\Classes");
}

// The platform registers type libraries below HKEY_CLASSES_ROOT, a merged view of every user's classes and the current
// user's. While this lives, the process sees one of them there.
class ClassesRoot {
public:
    explicit ClassesRoot(HKEY classes) { checkRegistry(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes)); }
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

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* lent = nullptr;
    platform::check(library.GetLibAttr(&lent));
    const TLIBATTR attributes = *lent;
    library.ReleaseTLibAttr(lent);
    return attributes;
}

void writeTypeLibrary(HKEY classes) {
    const ClassesRoot root(classes);
    std::wstring path = Module::path();
    platform::check(RegisterTypeLib(typeLibrary().get(), path.data(), nullptr));
}

void removeTypeLibrary(HKEY classes) {
    const ClassesRoot root(classes);
    const TLIBATTR own = attributesOf(*typeLibrary().get());
    BSTR path = nullptr;
    const bool registered =
        SUCCEEDED(QueryPathOfRegTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, &path));
    SysFreeString(path);
    if (!registered) return;
    platform::check(UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind));
}

void writeServer(HKEY classes, const Server& server) {
    for (const ServedClass& served : server.classes) writeClass(classes, served, server.typeLibrary);
    if (server.typeLibrary) writeTypeLibrary(classes);
}

// The result of a step that throws Failure.
template <class Step>
HRESULT outcomeOf(Step&& step) {
    try {
        step();
        return S_OK;
    } catch (const platform::Failure& failure) {
        return failure.code;
    }
}

// The first failure; every step is taken.
HRESULT removeServer(HKEY classes, const Server& server) {
    HRESULT outcome = S_OK;
    const auto take = [&](auto&& step) {
        const HRESULT code = outcomeOf(step);
        if (SUCCEEDED(outcome)) outcome = code;
    };
    for (const ServedClass& served : server.classes) take([&] { removeClass(classes, served); });
    if (server.typeLibrary) take([&] { removeTypeLibrary(classes); });
    return outcome;
}

}  // namespace

void registerServer(const Server& server, Audience audience) {
    const RegistryKey classes = classesOf(audience);
    const HRESULT written = outcomeOf([&] { writeServer(classes.get(), server); });
    if (FAILED(written)) removeServer(classes.get(), server);  // as far as it goes: the first failure tells more
    platform::check(written);
}

void unregisterServer(const Server& server, Audience audience) {
    platform::check(removeServer(classesOf(audience).get(), server));
}

}  // namespace velmor::com
