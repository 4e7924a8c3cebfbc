// Property files on the machine's disk, and exchanged between the systems.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "common/Base64.h"
#include "common/Cipher.h"
#include "platform/SystemServices.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr char kHere[] = "windows", kThere[] = "linux";
#else
constexpr char kHere[] = "linux", kThere[] = "windows";
#endif

constexpr std::u16string_view kPassword = u"pass \u00e9\u4e00";

PropertiesRef sample(platform::Services& services) {
    const PropertiesRef made = newProperties(services);
    made->AddStr(u"Name", u"caf\u00e9 \u0141 \U0001f600 \xd800 \"?");
    made->AddStr(u"Quote", u"\":")->Encoding(8);
    made->AddLng(u"\u4e00", -5)->Attributes()->AddDbl(u"a", 0.1);
    made->AddDate(u"When", automation::Date{38051.5})->Properties()->AddBoolean(u"Ok", true);
    made->Add(u"Price", automation::Currency{99900});
    made->AddStr(u"Packed", std::u16string(100, u'x'))->Encoding(4);
    return made;
}

class MachineFiles : public testing::Test {
protected:
    MachineFiles() : folder_(fs::path(services.folders.temporary()) / "velmor-property-files") {
        fs::remove_all(folder_);
        fs::create_directory(folder_);
    }
    ~MachineFiles() override {
        for (const auto& entry : fs::directory_iterator(folder_)) {
            fs::permissions(entry, fs::perms::owner_all);
        }
        fs::remove_all(folder_);
    }

    std::u16string path(const char* name) const { return (folder_ / name).u16string(); }
    std::string get(const char* name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    auto names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_)) all.push_back(entry.path().filename().string());
        return all;
    }

    platform::Services& services = platform::systemServices();
    PropertiesRef collection = newProperties(services);
    fs::path folder_;
};

TEST_F(MachineFiles, AreReplacedWhole) {
    collection->AddStr(u"a", std::u16string(100'000, u'x'));
    EXPECT_TRUE(collection->SaveFile(path("f")));
    EXPECT_EQ(get("f").size(), 100'005U);
    collection->AddStr(u"a", u"y", true);
    EXPECT_TRUE(collection->SaveFile(path("f")));
    EXPECT_EQ(get("f"), "a=\"y\":");
    EXPECT_EQ(names(), std::vector<std::string>{"f"});
}

TEST_F(MachineFiles, InInvalidPlacesAreRefused) {
    fs::create_directory(folder_ / "folder");
    std::ofstream(folder_ / "readonly") << "old=1&:";
    fs::permissions(folder_ / "readonly", fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    collection->AddLng(u"kept", 1);
    for (const auto* const name : {"folder", "readonly", "none/f", "readonly/f"}) {
        EXPECT_FALSE(collection->SaveFile(path(name))) << name;
        EXPECT_FALSE(collection->SaveToFile(path(name))) << name;
    }
    for (const auto* const name : {"folder", "none", "none/f", "readonly/f"}) {
        EXPECT_FALSE(collection->LoadFromFile(path(name))) << name;
    }
    EXPECT_EQ(describe(*collection), "kept=Long 1");
    EXPECT_EQ(get("readonly"), "old=1&:");
    EXPECT_EQ(names().size(), 2U);
    EXPECT_TRUE(collection->LoadFromFile(path("readonly")));
    EXPECT_EQ(describe(*collection), "old=Long 1");
}

TEST_F(MachineFiles, GivePictureObjects) {
    const std::string bitmap(
        "BM\x3a\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x01\0\0\0\x01\0\0\0\x01\0\x18\0\0\0\0\0\x04\0\0\0\0\0\0\0\0\0\0\0"
        "\0\0\0\0\0\0\0\0\xff\0\0\0",
        58);
    std::ofstream(folder_ / "f") << "Logo=~RO~Picture\"" << toUtf8(base64(bitmap)) << "\":";
    ASSERT_TRUE(collection->LoadFromFile(path("f")));
    EXPECT_EQ(describe(*collection), "Logo=Picture");
    collection->Insert(1, u"TAG", automation::Variant(0));
    const std::u16string again = collection->TagCommand();  // through a temporary file and back
    collection->Build(again, false, true);
    EXPECT_EQ(describe(*collection), "TAG=Long 0 | Logo=Picture");
    EXPECT_EQ(collection->TagCommand(), again);
}

// Every later version on both systems reads files that each system once wrote.
TEST_F(MachineFiles, OfBothSystemsAreRead) {
    const char16_t* const cases[] = {
        u"VelmorCipher1:no9OBTrju+In9V8dzTYvRCFu32/N1DbCRkueK8TmcEsalOaQLJ5A0tyAwFy5KuBL/uYiE58xfYjTK4I9cVdApA==",
        u"VelmorCipher1:DFKvItvKqT0tkNF45lj0UEqGg5B46Jemflj4aNWs0UX0pSt8NfpfWiv1VJkwBfwDWFMe8Fpnx4lIgESun/ugOQ==",
    };
    for (const char16_t* const enciphered : cases) {
        std::ofstream(folder_ / "f") << toUtf8(enciphered);
        EXPECT_TRUE(collection->LoadFromFile(path("f"), kPassword));
        EXPECT_EQ(describe(*collection), toUtf8(u"Name=String Ruth \u0141 | n=Long 5"));
    }
}

// With VELMOR_EXCHANGE, a folder: writes files there, and reads those that the tests wrote on the
// other system. ./test runs it on both.
TEST_F(MachineFiles, TravelBetweenTheSystems) {
    const char* const exchange = std::getenv("VELMOR_EXCHANGE");
    if (exchange == nullptr) GTEST_SKIP() << "VELMOR_EXCHANGE is not set";
    const auto file = [&](const char* system, const char* kind) {
        return (fs::path(exchange) / (std::string(system) + kind)).u16string();
    };
    const PropertiesRef original = sample(services);
    ASSERT_TRUE(original->SaveFile(file(kHere, ".kvp")));
    ASSERT_TRUE(original->SaveToFile(file(kHere, "-enciphered.kvp"), kPassword));
    if (!services.files.exists(file(kThere, ".kvp"))) GTEST_SKIP() << "no files of the other system yet";
    ASSERT_TRUE(collection->LoadFromFile(file(kThere, ".kvp")));
    EXPECT_EQ(describe(*collection), describe(*original));
    collection->RemoveAll();
    ASSERT_TRUE(collection->LoadFromFile(file(kThere, "-enciphered.kvp"), kPassword));
    EXPECT_EQ(describe(*collection), describe(*original));
}

}  // namespace
}  // namespace velmor
