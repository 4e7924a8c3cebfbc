#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

class BuilderFile : public testing::Test {
protected:
    BuilderFile() { std::filesystem::create_directories(folder_); }
    ~BuilderFile() override { std::filesystem::remove_all(folder_); }

    std::u16string file(const std::string& bytes) {
        std::ofstream(folder_ / "file", std::ios::binary) << bytes;
        return (folder_ / "file").u16string();
    }

    const std::filesystem::path folder_ = std::filesystem::path(testing::TempDir()) / "velmor builder \xC3\xA9";
};

TEST_F(BuilderFile, OneByteIsOneCharacter) {
    std::string all;
    for (int i = 0; i < 100003; ++i) all += static_cast<char>(i % 251);
    for (const std::string& bytes : {std::string(), std::string("x"), std::string("a\0\x80\xE9\r\n\x1A", 7), all}) {
        privStrCat builder;
        builder.GrowthRate(300);
        builder.Append(u"gone");
        builder.Remove(1, 1);
        EXPECT_EQ(builder.LoadFromFile(file(bytes)), static_cast<std::int32_t>(bytes.size()));
        EXPECT_EQ(builder.ReturnVal(), fromAnsi(bytes));
        EXPECT_EQ(builder.BufferLength(), builder.Length());  // no tail
        EXPECT_EQ(builder.GrowthRate(), 300);
        builder.Append(u"+");
        EXPECT_EQ(builder.LoadFromFileAppend(file(bytes)), static_cast<std::int32_t>(bytes.size()));
        EXPECT_EQ(builder.ReturnVal(), fromAnsi(bytes + "+" + bytes));
    }
}

TEST_F(BuilderFile, FailedReadsLeaveTheBuilderUnchanged) {
    const std::u16string folder = folder_.u16string(), existing = file("text");
    for (const std::u16string& name :
         {std::u16string(), folder, folder + u"/absent", existing + std::u16string(u"\0x", 2), folder + u"/\xD800"}) {
        privStrCat builder;
        builder.Append(u"kept");
        EXPECT_EQ(builder.LoadFromFile(name), 4) << toUtf8(name);
        EXPECT_EQ(builder.LoadFromFileAppend(name), 0);
        EXPECT_EQ(builder.ReturnVal() + builder.spareTail(), u"kept" + std::u16string(508, u' '));
    }
}

}  // namespace
}  // namespace velmor
