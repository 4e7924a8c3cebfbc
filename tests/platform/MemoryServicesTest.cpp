#include "platform/MemoryServices.h"

#include <gtest/gtest.h>

namespace velmor::platform {
namespace {

TEST(MemoryRegistry, MatchesWithoutRegardToCaseAndKeepsTheOrderOfValues) {
    MemoryServices services;
    services.registry.set(u"SOFTWARE\\Sample\\Handlers", u"ZETA", u"Sample.Zeta");
    services.registry.set(u"software\\sample\\HANDLERS\\", u"ALPHA", u"Sample.Alpha");
    services.registry.set(u"SOFTWARE\\Sample\\Handlers\\Alpha", u"Hide", u"1");
    services.registry.set(u"SOFTWARE\\Sample\\Handlers\\Alpha\\Deep", u"", u"x");
    services.registry.set(u"SOFTWARE\\Sample\\Handlers!", u"", u"x");

    const Registry& registry = services.Services::registry;
    EXPECT_EQ(registry.value(u"Software\\Sample\\Handlers", u"zeta"), u"Sample.Zeta");
    EXPECT_EQ(registry.value(u"SOFTWARE\\Sample\\Handlers", u"none"), std::nullopt);
    EXPECT_EQ(registry.valueNames(u"SOFTWARE\\SAMPLE\\Handlers"), (std::vector<std::u16string>{u"ZETA", u"ALPHA"}));
    EXPECT_EQ(registry.subkeys(u"SOFTWARE\\Sample"), (std::vector<std::u16string>{u"Handlers", u"Handlers!"}));
    EXPECT_EQ(registry.subkeys(u"SOFTWARE\\Sample\\Handlers\\"), (std::vector<std::u16string>{u"Alpha"}));
    EXPECT_EQ(registry.subkeys(u""), (std::vector<std::u16string>{u"SOFTWARE"}));

    services.registry.removeKey(u"SOFTWARE\\sample\\Handlers");
    EXPECT_EQ(registry.subkeys(u"SOFTWARE\\Sample"), (std::vector<std::u16string>{u"Handlers!"}));
}

TEST(MemoryFiles, FailsOnDemandAndLeavesTheFileAsItWas) {
    MemoryServices services;
    Files& files = services.Services::files;
    services.files.set(u"C:\\a.txt", "old");
    EXPECT_EQ(files.read(u"c:/A.TXT"), "old");

    services.files.diskFull = true;
    EXPECT_FALSE(files.write(u"C:\\a.txt", "new"));
    EXPECT_FALSE(files.append(u"C:\\a.txt", "new"));
    EXPECT_EQ(files.read(u"C:\\a.txt"), "old");

    services.files.failReading(u"C:\\a.txt");
    EXPECT_TRUE(files.exists(u"C:\\a.txt"));
    EXPECT_EQ(files.read(u"C:\\a.txt"), std::nullopt);
}

}  // namespace
}  // namespace velmor::platform
