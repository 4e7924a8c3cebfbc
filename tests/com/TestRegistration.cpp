// What registering writes, and that unregistering leaves nothing of it.

#include <gtest/gtest.h>

#include "Host.h"
#include "core/Version.h"

using namespace host;

namespace {

std::wstring classValue(const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t text[512] = L"";
    DWORD bytes = sizeof text;
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str(), name, RRF_RT_REG_SZ,
                                        nullptr, text, &bytes);
    return status == ERROR_SUCCESS ? text : L"(absent)";
}

std::wstring braced(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

class Registration : public testing::Test {
protected:
    using Entry = HRESULT(STDAPICALLTYPE*)();

    void SetUp() override {
        library = LoadLibraryW(L"Velmor3.dll");
        ASSERT_NE(library, nullptr);
    }
    void TearDown() override {
        EXPECT_EQ(call("DllRegisterServer"), S_OK);  // for the tests that follow
        FreeLibrary(library);
    }
    HRESULT call(const char* name) {
        return reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(library, name)))();
    }

    HMODULE library = nullptr;
    const std::wstring id = braced(CLSID_kvTag);
    const std::wstring libraryId = braced(LIBID_kvVelmor3);
};

TEST_F(Registration, WritesTheClass) {
    EXPECT_EQ(call("DllRegisterServer"), S_OK);
    EXPECT_EQ(classValue(L"kvVelmor3.kvTag\\CLSID"), id);
    EXPECT_EQ(classValue(L"kvVelmor3.kvTag\\CurVer"), L"kvVelmor3.kvTag.3");
    EXPECT_EQ(classValue(L"kvVelmor3.kvTag.3\\CLSID"), id);
    EXPECT_EQ(classValue(L"CLSID\\" + id + L"\\ProgID"), L"kvVelmor3.kvTag.3");
    EXPECT_EQ(classValue(L"CLSID\\" + id + L"\\VersionIndependentProgID"), L"kvVelmor3.kvTag");
    EXPECT_EQ(classValue(L"CLSID\\" + id + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(classValue(L"CLSID\\" + id + L"\\TypeLib"), libraryId);
    EXPECT_NE(classValue(L"TypeLib\\" + libraryId + L"\\3.0\\0\\win32").find(L"Velmor3.dll"), std::wstring::npos);
    EXPECT_EQ(classValue(L"Interface\\" + braced(IID__kvTag)), L"_kvTag");
}

TEST_F(Registration, LeavesNothing) {
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(call("DllUnregisterServer"), S_OK);
        for (const std::wstring& key :
             {L"CLSID\\" + id, std::wstring(L"kvVelmor3.kvTag"), std::wstring(L"kvVelmor3.kvTag.3"),
              L"TypeLib\\" + libraryId, L"Interface\\" + braced(IID__kvTag)}) {
            HKEY opened = nullptr;
            EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, (L"Software\\Classes\\" + key).c_str(), 0, KEY_READ, &opened),
                      ERROR_FILE_NOT_FOUND);
            if (opened) RegCloseKey(opened);
        }
    }
}

TEST_F(Registration, OnlyPublishedClassesHaveAFactory) {
    using GetClass = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto getClass =
        reinterpret_cast<GetClass>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
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
    const auto* bytes = static_cast<const char*>(LockResource(LoadResource(library, found)));
    const std::wstring resource(reinterpret_cast<const wchar_t*>(bytes),
                                SizeofResource(library, found) / sizeof(wchar_t));
    const std::wstring version = resultOf(newTag(), L"<KV:TAG>@DLL VERSION:</KV>");
    EXPECT_NE(resource.find(L"FileVersion" + std::wstring(1, L'\0')), std::wstring::npos);
    EXPECT_NE(resource.find(version), std::wstring::npos) << version;
    EXPECT_EQ(version, std::wstring(VELMOR_VERSION_TEXT, VELMOR_VERSION_TEXT + sizeof VELMOR_VERSION_TEXT - 1));
}

}  // namespace
