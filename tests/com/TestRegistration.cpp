// What registering writes, and that unregistering leaves nothing of it.

#include <gtest/gtest.h>

#include "Host.h"
#include "core/Version.h"

using namespace host;

namespace {

std::wstring braced(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

// Below the classes of the machine; null for a key's own value.
std::wstring read(const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t text[512] = L"";
    DWORD bytes = sizeof text;
    const std::wstring path = L"Software\\Classes\\" + key;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes)) return L"(absent)";
    return text;
}

class Registration : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(run("DllRegisterServer"), S_OK);  // for the tests that follow
        FreeLibrary(library);
    }
    template <class Function>
    Function entry(const char* name) {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    }
    HRESULT run(const char* name) { return entry<HRESULT(STDAPICALLTYPE*)()>(name)(); }

    const HMODULE library = LoadLibraryW(L"Velmor3.dll");
};

TEST_F(Registration, WritesItsClassesAndLeavesNothing) {
    const std::wstring libraryId = braced(LIBID_kvVelmor3), interfaceKey = L"Interface\\" + braced(IID__kvTag);
    std::vector<std::wstring> roots = {L"TypeLib\\" + libraryId, interfaceKey};
    EXPECT_EQ(run("DllUnregisterServer"), S_OK);
    EXPECT_EQ(run("DllRegisterServer"), S_OK);
    EXPECT_NE(read(L"TypeLib\\" + libraryId + L"\\3.0\\0\\win32").find(L"Velmor3.dll"), std::wstring::npos);
    EXPECT_EQ(read(interfaceKey), L"_kvTag");
    const std::pair<GUID, std::wstring> classes[] = {{CLSID_kvTag, L"kvVelmor3.kvTag"},
                                                     {CLSID_kvTagInfo, L"kvVelmor3.kvTagInfo"},
                                                     {CLSID_ITag4, L"kvVelmor3.ITag4"}};
    for (const auto& [id, name] : classes) {
        const std::wstring key = L"CLSID\\" + braced(id);
        EXPECT_EQ(read(name + L"\\CLSID"), braced(id));
        EXPECT_EQ(read(name + L"\\CurVer"), name + L".3");
        EXPECT_EQ(read(name + L".3\\CLSID"), braced(id));
        EXPECT_EQ(read(key + L"\\ProgID"), name + L".3");
        EXPECT_EQ(read(key + L"\\VersionIndependentProgID"), name);
        EXPECT_EQ(read(key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
        EXPECT_EQ(read(key + L"\\TypeLib"), libraryId);
        roots.insert(roots.end(), {key, name, name + L".3"});
    }
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(run("DllUnregisterServer"), S_OK);
        for (const std::wstring& root : roots) {
            HKEY left = nullptr;
            EXPECT_NE(RegOpenKeyW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + root).c_str(), &left), 0) << root;
            RegCloseKey(left);
        }
    }
}

TEST_F(Registration, OnlyPublishedClassesHaveAFactory) {
    const auto getClass = entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IClassFactory, factory.putVoid()), S_OK);
    EXPECT_EQ(getClass(CLSID_privProperty, IID_IClassFactory, factory.putVoid()), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IDispatch, factory.putVoid()), E_NOINTERFACE);
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IClassFactory, nullptr), E_POINTER);
}

// The version resource says what templates read.
TEST_F(Registration, VersionsAgree) {
    const HRSRC found = FindResourceW(library, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
    ASSERT_NE(found, nullptr);
    const auto* bytes = static_cast<const wchar_t*>(LockResource(LoadResource(library, found)));
    const std::wstring resource(bytes, SizeofResource(library, found) / sizeof(wchar_t));
    const std::wstring version = resultOf(newTag(), L"<KV:TAG>@DLL VERSION:</KV>");
    EXPECT_NE(resource.find(version), std::wstring::npos) << version;
    EXPECT_EQ(version, std::wstring(VELMOR_VERSION_TEXT, VELMOR_VERSION_TEXT + sizeof VELMOR_VERSION_TEXT - 1));
}

}  // namespace
