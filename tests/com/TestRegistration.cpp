// Registration, and unregistration without a trace.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "Host.h"
#include "core/Version.h"

using namespace host;

namespace {

std::wstring braced(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

// The owner of the classes, and the call that registers them.
struct Audience {
    HKEY root;
    const wchar_t* command;  // of DllInstall
};
const Audience everyone{HKEY_LOCAL_MACHINE, nullptr}, currentUser{HKEY_CURRENT_USER, L"USER"};

constexpr bool is64Bit = sizeof(void*) == 8;
constexpr REGSAM otherView = is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const std::wstring platform = is64Bit ? L"win64" : L"win32", otherPlatform = is64Bit ? L"win32" : L"win64";

// A key of the machine, removed at the end; in the view of programs of the other bitness unless told.
class OtherKey {
public:
    explicit OtherKey(std::wstring path, REGSAM view = otherView) : path_(std::move(path)), view_(view) {
        EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view_, nullptr,
                                  &key_, nullptr),
                  0);
    }
    OtherKey(const OtherKey&) = delete;
    OtherKey& operator=(const OtherKey&) = delete;
    ~OtherKey() {
        RegCloseKey(key_);
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), view_, 0);
    }
    void set(const wchar_t* name, const std::wstring& value) const {
        const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        EXPECT_EQ(RegSetKeyValueW(key_, nullptr, name, REG_SZ, value.c_str(), bytes), 0);
    }

private:
    std::wstring path_;
    REGSAM view_;
    HKEY key_ = nullptr;
};

// Below the classes; null for a key's default value.
std::wstring read(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
    wchar_t text[512] = L"";
    DWORD bytes = sizeof text;
    const std::wstring path = L"Software\\Classes\\" + key;
    if (RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &bytes)) return L"(absent)";
    return text;
}

const std::pair<GUID, std::wstring> classes[] = {{CLSID_kvTag, L"kvVelmor3.kvTag"},
                                                 {CLSID_kvTagInfo, L"kvVelmor3.kvTagInfo"},
                                                 {CLSID_ITag4, L"kvVelmor3.ITag4"},
                                                 {CLSID_kvCheck, L"kvVelmor3.kvCheck"}};

// Every key that registering makes directly below the classes and their folders.
std::vector<std::wstring> ownKeys() {
    std::vector<std::wstring> keys = {L"TypeLib\\" + braced(LIBID_kvVelmor3), L"AppID\\" + braced(CLSID_kvTag)};
    for (const IID& id : {IID__kvTag, IID__kvTags, IID__privProperties, IID__privProperty, IID__kvTagInfo,
                          IID__kvDirectTag, IID__ITag4, IID__kvLibrary, IID__kvCheck}) {
        keys.push_back(L"Interface\\" + braced(id));
    }
    for (const auto& [id, name] : classes) keys.insert(keys.end(), {L"CLSID\\" + braced(id), name, name + L".3"});
    return keys;
}

void expectAbsent(HKEY root) {
    for (const std::wstring& key : ownKeys()) {
        HKEY left = nullptr;
        EXPECT_NE(RegOpenKeyW(root, (L"Software\\Classes\\" + key).c_str(), &left), 0) << root << key;
        RegCloseKey(left);
    }
}

void expectWritten(HKEY root) {
    const std::wstring libraryId = braced(LIBID_kvVelmor3);
    EXPECT_NE(read(root, L"TypeLib\\" + libraryId + L"\\3.0\\0\\" + platform).find(L"Velmor3.dll"), std::wstring::npos);
    EXPECT_EQ(read(root, L"Interface\\" + braced(IID__kvTag)), L"_kvTag");
    for (const auto& [id, name] : classes) {
        const std::wstring key = L"CLSID\\" + braced(id);
        EXPECT_EQ(read(root, name + L"\\CLSID"), braced(id));
        EXPECT_EQ(read(root, name + L"\\CurVer"), name + L".3");
        EXPECT_EQ(read(root, name + L".3\\CLSID"), braced(id));
        EXPECT_EQ(read(root, key + L"\\ProgID"), name + L".3");
        EXPECT_EQ(read(root, key + L"\\VersionIndependentProgID"), name);
        EXPECT_EQ(read(root, key + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
        EXPECT_EQ(read(root, key + L"\\TypeLib"), libraryId);
    }
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

    HRESULT install(BOOL install, const Audience& audience) {
        return entry<HRESULT(STDAPICALLTYPE*)(BOOL, const wchar_t*)>("DllInstall")(install, audience.command);
    }

    const HMODULE library = LoadLibraryW(L"Velmor3.dll");
};

TEST_F(Registration, RegistersAndUnregistersCompletely) {
    EXPECT_EQ(run("DllUnregisterServer"), S_OK);
    for (const Audience& audience : {everyone, currentUser}) {
        EXPECT_EQ(install(TRUE, audience), S_OK);
        expectWritten(audience.root);
        expectAbsent(audience.root == HKEY_CURRENT_USER ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER);
        for (int again = 0; again < 2; ++again) {
            EXPECT_EQ(install(FALSE, audience), S_OK);
            expectAbsent(audience.root);
        }
    }
    EXPECT_EQ(install(TRUE, {HKEY_CURRENT_USER, L"users"}), E_INVALIDARG);
    EXPECT_EQ(install(TRUE, {HKEY_LOCAL_MACHINE, L"surrogate"}), S_OK);
    expectWritten(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"AppID\\" + braced(CLSID_kvTag), L"DllSurrogate"), L"");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"CLSID\\" + braced(CLSID_ITag4), L"AppID"), braced(CLSID_kvTag));
    EXPECT_EQ(run("DllUnregisterServer"), S_OK);
    expectAbsent(HKEY_LOCAL_MACHINE);
}

TEST_F(Registration, LeavesWhatThePartnerOfTheOtherBitnessShares) {
    const std::wstring types = L"TypeLib\\" + braced(LIBID_kvVelmor3) + L"\\3.0\\0\\";
    {
        const OtherKey partner(L"Software\\Classes\\CLSID\\" + braced(CLSID_kvTag));
        const OtherKey partnersLibrary(L"Software\\Classes\\" + types + otherPlatform);
        partnersLibrary.set(nullptr, L"Velmor3.dll");
        for (int again = 0; again < 2; ++again) {
            EXPECT_EQ(run("DllUnregisterServer"), S_OK);
            EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"CLSID\\" + braced(CLSID_kvTag) + L"\\ProgID"), L"(absent)");
            EXPECT_EQ(read(HKEY_LOCAL_MACHINE, types + platform), L"(absent)");
            EXPECT_EQ(read(HKEY_LOCAL_MACHINE, types + otherPlatform), L"Velmor3.dll");
            EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"kvVelmor3.kvTag\\CurVer"), L"kvVelmor3.kvTag.3");
            EXPECT_EQ(read(HKEY_LOCAL_MACHINE, L"Interface\\" + braced(IID__kvTag)), L"_kvTag");
        }
    }
    EXPECT_EQ(run("DllRegisterServer"), S_OK);
    EXPECT_EQ(run("DllUnregisterServer"), S_OK);
    expectAbsent(HKEY_LOCAL_MACHINE);
}

// A volatile key accepts no permanent subkey: the last class fails.
TEST_F(Registration, LeavesNoTraceWhenItFails) {
    HKEY obstacle = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes\\kvVelmor3.ITag4", 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_WRITE, nullptr, &obstacle, nullptr),
              0);
    RegCloseKey(obstacle);
    EXPECT_EQ(install(TRUE, currentUser), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    expectAbsent(HKEY_CURRENT_USER);
    expectWritten(HKEY_LOCAL_MACHINE);
}

TEST_F(Registration, TakesThePlaceOfAnOlderOne) {
    const std::wstring server = L"CLSID\\" + braced(CLSID_kvTag) + L"\\InprocServer32";
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"ThreadingModel", L"Other"}) {
        const std::wstring path = L"Software\\Classes\\" + server;
        EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, path.c_str(), name, REG_SZ, L"old", sizeof L"old"), 0);
    }
    EXPECT_EQ(run("DllRegisterServer"), S_OK);
    EXPECT_NE(read(HKEY_LOCAL_MACHINE, server).find(L"Velmor3.dll"), std::wstring::npos);
    expectWritten(HKEY_LOCAL_MACHINE);
    EXPECT_EQ(run("DllUnregisterServer"), S_OK);
    expectAbsent(HKEY_LOCAL_MACHINE);
}

TEST_F(Registration, OnlyPublishedClassesHaveAFactory) {
    const auto getClass = entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IClassFactory, factory.putVoid()), S_OK);
    EXPECT_EQ(getClass(CLSID_privProperty, IID_IClassFactory, factory.putVoid()), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IDispatch, factory.putVoid()), E_NOINTERFACE);
    EXPECT_EQ(getClass(CLSID_kvTag, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(Catalogue, IsThatOfBothBitnesses) {
    const std::wstring classId = L"{5CD8AD49-6971-4F69-B4D1-9E79D70FA2FF}";
    const OtherKey catalogue(L"SOFTWARE\\Korvane\\Quillmark\\Handlers");
    catalogue.set(L"ELSEWHERE", L"VelmorTest.Level5");
    catalogue.set(L"LEVEL5", L"VelmorTest.Level3");  // the own view has another class
    catalogue.set(L"OTHERBITS", L"VelmorTest.OtherBits");
    // Names are shared; Wine keeps them apart.
    const OtherKey className(L"Software\\Classes\\VelmorTest.OtherBits", 0);
    const OtherKey identifier(L"Software\\Classes\\VelmorTest.OtherBits\\CLSID", 0);
    identifier.set(nullptr, classId);
    const OtherKey onlyThere(L"Software\\Classes\\CLSID\\" + classId);
    const auto tag = newTag();
    EXPECT_EQ(resultOf(tag, L"<KV:ELSEWHERE>X:</KV>,<KV:LEVEL5>X:</KV>,<KV:OTHERBITS>X:</KV>"), L"L5[X],L5[X],");
    const auto log = get(tag.get(), L"ErrorLog").object();
    const std::wstring entry = get(log.get(), L"Stored").text();
    EXPECT_NE(entry.find(is64Bit ? L"registered for 32-bit programs only" : L"registered for 64-bit programs only"),
              std::wstring::npos)
        << entry;
    const std::wstring all = get(create(L"kvVelmor3.kvTagInfo").get(), L"HandlerListString").text();
    EXPECT_NE(all.find(L"ELSEWHERE:"), std::wstring::npos) << all;
    EXPECT_EQ(all.find(L"LEVEL5:"), all.rfind(L"LEVEL5:")) << all;
}

// A host's manifest may name a handler's class that is absent from the registry.
TEST(Manifest, NamesHandlers) {
    std::ofstream("tests/VelmorTest.manifest")
        << "<assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'>"
           "<assemblyIdentity type='win32' name='VelmorManifest' version='1.0.0.0'/><file name='VelmorTest.dll'>"
           "<comClass clsid='{5CD8AD49-6971-4F69-B4D1-9E79D70FA205}' progid='VelmorManifest.Level5'"
           " threadingModel='Apartment'/></file></assembly>";
    wchar_t path[MAX_PATH];
    ASSERT_NE(GetFullPathNameW(L"tests\\VelmorTest.manifest", MAX_PATH, path, nullptr), 0U);
    ACTCTXW manifest{};
    manifest.cbSize = sizeof manifest;
    manifest.lpSource = path;
    const HANDLE context = CreateActCtxW(&manifest);
    ASSERT_NE(context, INVALID_HANDLE_VALUE);
    const auto tag = newTag();
    EXPECT_EQ(resultOf(tag, L"<KV:MANIFEST>X:</KV>"), L"");
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie));
    EXPECT_EQ(resultOf(tag, L"<KV:MANIFEST>X:</KV>"), L"L5[X]");
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(context);
}

// One of our binaries as a file.
std::string bytesOf(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The version resource has the version that templates read, and the company.
TEST(Binaries, HaveVersionAndCompany) {
    const std::wstring version = resultOf(newTag(), L"<KV:TAG>@DLL VERSION:</KV>");
    EXPECT_EQ(version, std::wstring(VELMOR_VERSION_TEXT, VELMOR_VERSION_TEXT + sizeof VELMOR_VERSION_TEXT - 1));
    for (const wchar_t* name : {L"Velmor3.dll", L"velmor.exe"}) {
        const HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_AS_DATAFILE);
        const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
        ASSERT_NE(found, nullptr) << name;
        const auto* words = static_cast<const wchar_t*>(LockResource(LoadResource(module, found)));
        const std::wstring resource(words, SizeofResource(module, found) / sizeof(wchar_t));
        for (const std::wstring& text : {version, std::wstring(name), std::wstring(L"CompanyName"),
                                         std::wstring(L"LegalCopyright"), std::wstring(L"Velmor")}) {
            EXPECT_NE(resource.find(text + L'\0'), std::wstring::npos) << name << text;
        }
        FreeLibrary(module);
    }
}

// Features for the loader and the debugger.
TEST(Binaries, AreHardenedAndStripped) {
    for (const std::string name : {"Velmor3.dll", "velmor.exe"}) {
        const std::string bytes = bytesOf(name);
        const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data());
        ASSERT_GT(bytes.size(), sizeof(IMAGE_DOS_HEADER) + sizeof(IMAGE_NT_HEADERS));
        const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(bytes.data() + dos->e_lfanew);
        constexpr WORD loading = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
        EXPECT_EQ(headers->OptionalHeader.DllCharacteristics & loading, loading) << name;
        EXPECT_EQ(headers->FileHeader.NumberOfSymbols, 0U) << name;
        EXPECT_NE(bytes.find(name + ".debug"), std::string::npos) << name;
        EXPECT_FALSE(bytesOf(name + ".debug").empty()) << name;
        const bool large = (headers->FileHeader.Characteristics & IMAGE_FILE_LARGE_ADDRESS_AWARE) != 0;
        EXPECT_EQ(large, is64Bit || name == "velmor.exe") << name;
    }
}

}  // namespace
