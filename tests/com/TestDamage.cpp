// Damaged files, invalid registries and logs that cannot be written, in a host of the component. damage.vbs has the
// cases that a script can express.

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <regex>
#include <thread>

#include "Host.h"

using namespace host;

namespace {

constexpr wchar_t kHandlers[] = L"SOFTWARE\\Korvane\\Quillmark\\Handlers";
constexpr wchar_t kOptions[] = L"SOFTWARE\\Korvane\\Quillmark\\Options";

// A string value below HKEY_LOCAL_MACHINE, for the duration of a test.
class RegistryValue {
public:
    RegistryValue(const wchar_t* key, std::wstring name, const std::wstring& data) : key_(key), name_(std::move(name)) {
        EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key_, name_.c_str(), REG_SZ, data.c_str(),
                                  static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }
    ~RegistryValue() { RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key_, name_.c_str()); }

private:
    const wchar_t* key_;
    std::wstring name_;
};

class Damage : public testing::Test {
protected:
    std::wstring listed() const { return get(info.get(), L"HandlerListString").text(); }

    const std::wstring folder = get(get(newTag().get(), L"Library").object().get(), L"TemporaryFolder").text();
    const std::wstring file = folder + L"\\velmor-damage.kvp";
    ComPtr<_kvTag> tag = newTag();
    ComPtr<IDispatch> info = create(L"kvVelmor3.kvTagInfo");
};

TEST_F(Damage, AnyRegistryIsRead) {
    const std::wstring name(16000, L'N'), lines = L"CR\r\nLF", data(64000, L'c');
    {
        const RegistryValue longData(kHandlers, L"LONG", data), broken(kHandlers, lines, L"VelmorTest.Level3"),
            longName(kHandlers, name, L"VelmorTest.Level3"), unnamed(kHandlers, L"", L"VelmorTest.Level3");
        EXPECT_EQ(
            resultOf(tag,
                     (L"[<KV:LONG>X:</KV><KV:" + lines + L">X:</KV><KV:" + name + L">X:</KV><KV:>X:</KV>]").c_str()),
            L"[L3[X]L3[X]]");
        EXPECT_NE(listed().find(L":CR\r\nLF:"), std::wstring::npos);
        EXPECT_NE(listed().find(L":" + name + L":"), std::wstring::npos);
        EXPECT_EQ(get(get(info.get(), L"HandlerList").object().get(), L"GetValue", values(L"LONG")).text(), data);
        EXPECT_EQ(get(info.get(), L"TagAvailable", values(L"LONG")).text(), L"False");
    }
    // Without any key of ours.
    HKEY none = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\VelmorTest", &none), ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, none), ERROR_SUCCESS);
    EXPECT_EQ(listed(), L"TAG:");
    EXPECT_EQ(resultOf(tag, L"[<KV:LEVEL3>X:</KV>]"), L"[]");
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(none);
    EXPECT_EQ(resultOf(tag, L"[<KV:LEVEL3>X:</KV>]"), L"[L3[X]]");
}

TEST_F(Damage, FilesThatCannotBeOpenedStay) {
    const auto list = propertiesOf(tag);
    get(list.get(), L"Add", values(L"kept", L"x"));
    EXPECT_EQ(get(list.get(), L"SaveFile", values(file.c_str())).text(), L"True");
    get(list.get(), L"Add", values(L"more", L"y"));
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(get(list.get(), L"SaveFile", values(file.c_str())).text(), L"False");
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    for (const wchar_t* member : {L"LoadFromFile", L"SaveFile", L"SaveToFile"}) {
        EXPECT_EQ(get(list.get(), member, values(file.c_str())).text(), L"False") << member;
    }
    EXPECT_EQ(get(tag.get(), L"CleanRTFFile", values(file.c_str())).text(), L"False");
    CloseHandle(held);
    EXPECT_EQ(get(list.get(), L"Count").text(), L"2");
    EXPECT_EQ(get(list.get(), L"LoadFromFile", values(file.c_str())).text(), L"True");
    EXPECT_EQ(get(list.get(), L"Stored").text(), L"kept=\"x\":");
    DeleteFileW(file.c_str());
}

// A thread reads the settings once, so each log has a thread of its own.
class TimingLog : public Damage {
protected:
    void onItsOwnThread(const std::function<void()>& body) {
        const RegistryValue types(kOptions, L"Logging Types", L"30");
        std::thread([&] {
            ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
            body();
            CoUninitialize();
        }).join();
    }
    std::wstring log() const {
        WIN32_FIND_DATAW found{};
        FindClose(FindFirstFileW((data + L"\\Logs\\*.log").c_str(), &found));
        return found.cFileName;
    }
    void removeLog() {
        DeleteFileW((data + L"\\Logs\\" + log()).c_str());
        RemoveDirectoryW((data + L"\\Logs").c_str());
        RemoveDirectoryW(data.c_str());
    }
    void SetUp() override { removeLog(); }
    void TearDown() override { removeLog(); }

    const std::wstring data =
        get(get(newTag().get(), L"Library").object().get(), L"CommonDataFolder").text() + L"\\Pellmar";
};

TEST_F(TimingLog, HasALineOfEachKind) {
    onItsOwnThread([] {
        const auto logging = newTag();
        EXPECT_EQ(resultOf(logging, L"<KV:LEVEL3>X:</KV>"), L"L3[X]");
        get(logging.get(), L"CleanRTFByVal", values(L"{\\rtf1 a}"));
    });
    EXPECT_TRUE(std::regex_match(log(), std::wregex(L"VelmorLog-20\\d{6}\\.log")));
    const std::wstring path = data + L"\\Logs\\" + log();
    std::ifstream lines(std::string(path.begin(), path.end()), std::ios::binary);
    for (const char* kind : {"TAGCOL 0000\\.\\d{3}  1", "TAGCOL 0000\\.\\d{3} LEVEL3 0", "EVTAG  0000\\.\\d{3} LEVEL3",
                             "GENRES 0000\\.\\d{3} ", "CLNRTF 0000\\.\\d{3} \\d+"}) {
        std::string line;
        std::getline(lines, line);
        EXPECT_TRUE(std::regex_match(
            line, std::regex(std::string("\\d\\d/\\d\\d/20\\d\\d \\d\\d:\\d\\d:\\d\\d \\S+ ") + kind + "\r")))
            << line << " for " << kind;
    }
}

TEST_F(TimingLog, NeverStopsEvaluation) {
    std::ofstream(std::string(data.begin(), data.end())) << "a file in the folder's place";
    onItsOwnThread([] { EXPECT_EQ(resultOf(newTag(), L"<KV:LEVEL3>X:</KV>"), L"L3[X]"); });
    EXPECT_EQ(log(), L"");
    DeleteFileW(data.c_str());
}

}  // namespace
