// Property files on the machine's disk.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "common/Base64.h"
#include "platform/SystemServices.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kPassword = u"pass \u00e9\u4e00";

class MachineFiles : public testing::Test {
protected:
    MachineFiles() : folder_(fs::path(services.folders.temporary()) / "velmor-property-files") {
        fs::remove_all(folder_);
        fs::create_directory(folder_);
    }
    ~MachineFiles() override { fs::remove_all(folder_); }

    std::u16string path(const char* name) const { return (folder_ / name).u16string(); }
    platform::Services& services = platform::systemServices();
    PropertiesRef collection = newProperties(services);
    fs::path folder_;
};

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

}  // namespace
}  // namespace velmor
