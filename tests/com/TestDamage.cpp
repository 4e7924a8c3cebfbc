// Damaged files, invalid registries and logs that cannot be written, in a host of the component.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
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
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    for (const wchar_t* member : {L"LoadFromFile", L"SaveFile"}) {
        EXPECT_EQ(get(list.get(), member, values(file.c_str())).text(), L"False") << member;
        EXPECT_EQ(get(list.get(), member, values(folder.c_str())).text(), L"False") << member;
    }
    CloseHandle(held);
    EXPECT_EQ(get(list.get(), L"LoadFromFile", values(file.c_str())).text(), L"True");
    EXPECT_EQ(get(list.get(), L"Stored").text(), L"kept=\"x\":");
    DeleteFileW(file.c_str());
}

// A thread reads the settings once, so the log has a thread of its own.
TEST_F(Damage, TheTimingLogIsWrittenAndNeverStopsEvaluation) {
    const std::filesystem::path data =
        get(get(tag.get(), L"Library").object().get(), L"CommonDataFolder").text() + L"\\Pellmar";
    const RegistryValue types(kOptions, L"Logging Types", L"30");
    for (const bool isObstructed : {true, false}) {
        std::filesystem::remove_all(data);
        if (isObstructed) std::ofstream(data) << "a file in the folder's place";
        std::thread([] {
            ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
            EXPECT_EQ(resultOf(newTag(), L"<KV:LEVEL3>X:</KV>"), L"L3[X]");
            CoUninitialize();
        }).join();
    }
    const std::filesystem::path log = std::filesystem::directory_iterator(data / "Logs")->path();
    EXPECT_TRUE(std::regex_match(log.filename().string(), std::regex("VelmorLog-20\\d{6}\\.log")));
    std::string line;
    std::getline(std::ifstream(log, std::ios::binary), line);
    EXPECT_TRUE(std::regex_match(
        line, std::regex("\\d\\d/\\d\\d/20\\d\\d \\d\\d:\\d\\d:\\d\\d \\S+ TAGCOL 0000\\.\\d{3}  1\r")))
        << line;
    std::filesystem::remove_all(data);
}

}  // namespace
