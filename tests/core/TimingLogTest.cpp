// The timing log. A thread reads the settings once, so each case has a thread of its own.

#include "core/TimingLog.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/TestTags.h"

namespace velmor {
namespace {

using automation::Variant;
using test::TagTest;

constexpr std::u16string_view options = u"SOFTWARE\\Korvane\\Quillmark\\Options";
constexpr std::u16string_view logPath = u"C:\\ProgramData\\Pellmar\\Logs\\VelmorLog-20080305.log";

// The log of evaluating the text; "-" without a log.
std::string logOf(TagTest& on, std::u16string_view types, std::u16string_view text) {
    if (!types.empty()) on.services.registry.set(options, u"Logging Types", types);
    on.services.clock.step = 0.016;
    std::thread([&] { on.evaluate(text); }).join();
    return on.services.files.get(logPath).value_or("-");
}

// A log of these entries, with time and machine.
std::string log(std::initializer_list<std::string> entries) {
    std::string lines;
    for (const std::string& entry : entries) lines += "05/03/2008 14:22:07 SRV01 " + entry + "\r\n";
    return lines;
}

TEST(TimingLog, WritesTheLinesOfTheTypesThatAreOn) {
    const std::pair<const char16_t*, std::string> cases[] = {
        {u"2", log({"EVTAG  0000.016 H", "EVTAG  0000.016 TAG", "EVTAG  0000.016 ", "EVTAG  0000.016 GONE",
                    "EVTAG  0000.016 TAG"})},
        {u"4", log({"TAGCOL 0000.016  5", "TAGCOL 0000.016 H 1", "TAGCOL 0000.016 TAG 0", "TAGCOL 0000.016 TAG 0"})},
        {u"16", log({"GENRES 0000.016 "})},
        {u"22.0", log({"TAGCOL 0000.016  5", "TAGCOL 0000.016 H 1", "EVTAG  0000.048 H", "TAGCOL 0000.016 TAG 0",
                       "EVTAG  0000.048 TAG", "EVTAG  0000.016 ", "EVTAG  0000.016 GONE", "TAGCOL 0000.016 TAG 0",
                       "EVTAG  0000.048 TAG", "GENRES 0000.272 "})},
        {u"8", "-"},
    };
    for (const auto& [types, lines] : cases) {
        TagTest on;
        on.addHandler(u"H", 5, [](kvTag&) { return Variant(u"(<KV:TAG>PROPERTY:x=1:</KV>)"); });
        on.services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\SubHandlers\\GRP", u"H", u"Test.H");
        EXPECT_EQ(logOf(on, types, u"<KV:GRP-h>x:</KV><KV:none</KV><KV:gone>x:</KV>[PROPERTY:x=2:] <KV:"), lines);
        EXPECT_EQ(on.last->Result(), u"(1)2 <KV:");
    }
}

TEST(TimingLog, MeasuresNothingWhenOff) {
    const std::pair<const char16_t*, bool> typesAndFolder[] = {
        {u"", true}, {u"1", true}, {u"0", false}, {u"nonsense", false}, {u"9999999999", false}};
    for (const auto& [types, makesFolder] : typesAndFolder) {
        TagTest on;
        const double before = on.services.clock.timer();
        EXPECT_EQ(logOf(on, types, u"[PROPERTY:x=1:]"), "-");
        on.services.clock.step = 0;
        EXPECT_EQ(on.services.clock.timer(), before);
        EXPECT_EQ(!on.services.files.folders.empty(), makesFolder);
        EXPECT_EQ(on.services.registry.reads, 1u);
    }
}

TEST(TimingLog, ReadsItsSettingsOnceOnEachThread) {
    TagTest on;
    on.services.registry.set(options, u"Logging Types", u"16");
    std::thread([&] {
        on.evaluate(u"a");
        on.services.registry.set(options, u"Logging Types", u"1");
        on.services.clock.set(2008, 3, 6);
        on.evaluate(u"b");
    }).join();
    EXPECT_EQ(*on.services.files.get(logPath),
              "05/03/2008 14:22:07 SRV01 GENRES 0000.000 \r\n06/03/2008 00:00:00 SRV01 GENRES 0000.000 \r\n");
    EXPECT_EQ(on.services.registry.reads, 1u);
    std::thread([&] { on.evaluate(u"c"); }).join();
    EXPECT_EQ(on.services.registry.reads, 2u);
    EXPECT_EQ(on.services.files.paths().size(), 1u);
}

TEST(TimingLog, LeavesOutFailingStagesAndChildren) {
    TagTest on;
    on.addHandler(u"F", 3, [](kvTag& tag) -> Variant {
        tag.ProcessValue(u"<KV:TAG>PROPERTY:a=1:</KV>");
        throw Error(5, u"Test", u"refused");
    });
    EXPECT_EQ(logOf(on, u"18", u"<KV:F>x:</KV>"), log({"EVTAG  0000.016 TAG", "GENRES 0000.064 "}));
}

TEST(TimingLog, KeepsItsLinesWhole) {
    TagTest on;
    on.services.folders.machine = u"\\SRV\r\n01";
    const std::u16string huge(64'000, u'N');
    EXPECT_EQ(logOf(on, u"2", u"<KV:a\r\nb\u0085\u20ac>x:</KV><KV:" + huge + u">x:</KV>"),
              "05/03/2008 14:22:07 SRV  01 EVTAG  0000.016 A  B \x80\r\n"
              "05/03/2008 14:22:07 SRV  01 EVTAG  0000.016 " +
                  std::string(64'000, 'N') + "\r\n");
}

TEST(TimingLog, NeverStopsEvaluation) {
    TagTest on;
    on.services.files.diskFull = true;
    EXPECT_EQ(logOf(on, u"30", u"[PROPERTY:x=1:]"), "-");
    EXPECT_EQ(on.last->Result(), u"1");
    EXPECT_TRUE(on.errors().empty());
}

TEST(TimingLog, RoundsAndFillsTheSeconds) {
    TagTest on;
    on.services.registry.set(options, u"Logging Types", u"8");
    std::thread([&] {
        kvTag tag(on.services);
        for (const double seconds : {-1.0, 0.0004, 0.0006, 59.9996, 12345.5}) {
            TimingLog::write(on.services, LogType::cleaning, seconds, u"17");
        }
    }).join();
    EXPECT_EQ(*on.services.files.get(logPath), log({"CLNRTF 0000.000 17", "CLNRTF 0000.000 17", "CLNRTF 0000.001 17",
                                                    "CLNRTF 0060.000 17", "CLNRTF 12345.500 17"}));
}

}  // namespace
}  // namespace velmor
