// Handlers of a library behind the C interface.

#ifndef _WIN32

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/ErrorLog.h"
#include "core/kvTag.h"
#include "platform/SystemServices.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;

class HandlerLibrary : public testing::Test {
protected:
    HandlerLibrary() {
        std::ofstream(file_) << "REGEDIT4\n[HKLM\\SOFTWARE\\Korvane\\Quillmark\\Handlers]\n\"H\"=\"Test.Handler\"\n"
                                "[HKLM\\SOFTWARE\\Classes\\Test.Handler]\n\"NativeLibrary\"=\"" VELMOR_TEST_HANDLER
                                "\"\n";
    }
    ~HandlerLibrary() override { fs::remove(file_); }

    // The text of a tag of the handler and the entries of the error log.
    std::string evaluate(const std::string& tag) {
        platform::SystemServices machine({file_.u16string(), {}, false});
        const auto template_ = std::make_shared<kvTag>(machine.services());
        template_->Properties().own()->Build(u"Text=\"a\":Amount=2.5$:Day=#5 Mar 2004 12:00:00 PM#:Deep=\"d\":");
        template_->Properties().own()->AddBoolean(u"Sure", true, true);
        template_->Value(fromUtf8("<KV:H>" + tag + ":</KV>"));
        std::string text = toUtf8(template_->Result());
        const auto log = template_->ErrorLog();
        for (std::int32_t i = 1; i <= log->Count(); ++i) text += "; " + toUtf8(log->Item(i)->ValueStr());
        template_->Dispose();
        return text;
    }

    const fs::path file_ = fs::temp_directory_path() / ("velmor-handlers-" + std::to_string(getpid()) + ".reg");
};

TEST_F(HandlerLibrary, ReachesTheTag) {
    EXPECT_EQ(evaluate("SAY=<KV:TAG>PROPERTY:Text=:</KV>:A=1"), "SAY|a|1|none|a");
    EXPECT_EQ(evaluate("TYPES"), "text a,number 2.5,date 3/5/2004 12:00:00 PM,truth True,text d,nothing ,");
    EXPECT_EQ(evaluate("CHANGES"),
              "text d,number 3.5,date 3/6/2004 12:00:00 PM,truth False,text d,nothing ,rtf; logged");
}

TEST_F(HandlerLibrary, ErrorsAreEntries) {
    const std::pair<const char*, const char*> cases[] = {{"FAILS", "; on purpose"},
                                                         {"THROWS", "; thrown inside"},
                                                         {"ODD", "; Automation error"},
                                                         {"MEMBER", "; Object doesn't support this property or method"},
                                                         {"CONVERT", "; Type mismatch"}};
    for (const auto& [command, entry] : cases) EXPECT_EQ(evaluate(command).rfind(entry, 0), 0U) << command;
}

}  // namespace
}  // namespace velmor

#endif
