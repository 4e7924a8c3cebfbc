#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "core/kvTag.h"
#include "platform/MemoryServices.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::Variant;

class Cleaning : public testing::Test {
protected:
    platform::MemoryServices machine;
};

const char16_t* const document = u"{\\rtf1 a\r\n\r\n{\\*\\korvanemergepagebreak}b}";

TEST_F(Cleaning, TakesTheMergeModeOfTheTag) {
    const auto tag = std::make_shared<kvTag>(machine);
    EXPECT_FALSE(tag->CleanRTFMergeMode());
    Variant on(true);
    tag->invoke(u"CleanRTFMergeMode", InvokeKind::let, {&on, 1});
    EXPECT_TRUE(tag->CleanRTFMergeMode());
    EXPECT_NE(tag->CleanRTFByVal(document).find(u"\\sect\\pgwsxn0"), std::u16string::npos);
    const auto isTolerant = [&] { return tag->CleanRTFByVal(document).find(u"\\pgwsxn12240") != std::u16string::npos; };
    machine.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"RTF Tolerant", u"1");
    EXPECT_TRUE(isTolerant());
    tag->Properties().put(u"kvTag.RTF Tolerant", Variant(u"no"));
    EXPECT_FALSE(isTolerant());
    tag->Properties().put(u"kvTag.RTF Tolerant", Variant(u"yes"));
    machine.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"RTF Tolerant", u"0");
    EXPECT_TRUE(isTolerant());
}

TEST_F(Cleaning, WritesALineForEveryTextAndEveryFile) {
    machine.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"Logging Types", u"8");
    machine.files.set(u"in.rtf", "{\\rtf1 a}");
    std::thread([&] {
        const auto tag = std::make_shared<kvTag>(machine);
        tag->CleanRTFByVal(u"no RTF");
        EXPECT_TRUE(tag->CleanRTFFile(u"in.rtf", u"out.rtf"));
        EXPECT_FALSE(tag->CleanRTFFile(u"none.rtf"));
    }).join();
    std::string log;
    for (const std::u16string& path : machine.files.paths()) {
        if (path.ends_with(u".log")) log = machine.files.get(path).value_or("");
    }
    EXPECT_NE(log.find(" CLNRTF 0000.000 6\r\n"), std::string::npos) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 2) << log;
    EXPECT_TRUE(machine.files.get(u"out.rtf").has_value());
}

TEST_F(Cleaning, RefusesMissingFilesAndReplacesWholeFiles) {
    platform::MemoryFiles& files = machine.files;
    files.set(u"in.rtf", "{\\rtf1 \xe4\r\n\r\n}");
    files.set(u"empty.rtf", "");
    files.set(u"locked.rtf", "{\\rtf1 x}");
    files.set(u"kept.rtf", "old");
    files.failReading(u"locked.rtf");

    const auto tag = std::make_shared<kvTag>(machine);
    EXPECT_FALSE(tag->CleanRTFFile(u"none.rtf", u"out.rtf"));
    EXPECT_FALSE(tag->CleanRTFFile(u"locked.rtf", u"out.rtf"));
    EXPECT_FALSE(files.get(u"out.rtf").has_value());
    EXPECT_TRUE(tag->CleanRTFFile(u"empty.rtf", u"out.rtf"));
    EXPECT_EQ(files.get(u"out.rtf"), "");

    EXPECT_TRUE(tag->CleanRTFFile(u"in.rtf", u"out.rtf"));
    EXPECT_EQ(files.get(u"in.rtf"), "{\\rtf1 \xe4\r\n\r\n}");
    EXPECT_TRUE(tag->CleanRTFFile(u"in.rtf", u""));
    EXPECT_EQ(files.get(u"in.rtf"), files.get(u"out.rtf"));
    EXPECT_EQ(files.get(u"in.rtf")->substr(files.get(u"in.rtf")->size() - 4), "\xe4\r\n}");

    files.failWriting(u"kept.rtf");
    EXPECT_FALSE(tag->CleanRTFFile(u"in.rtf", u"kept.rtf"));
    EXPECT_EQ(files.get(u"kept.rtf"), "old");
}

}  // namespace
}  // namespace velmor
