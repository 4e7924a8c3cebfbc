#ifndef _WIN32

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "core/kvTag.h"
#include "platform/SystemServices.h"
#include "properties/privProperties.h"

namespace velmor {
namespace {

constexpr int threadCount = 8;
constexpr int handlers = 2000;

// A machine with handlers of that many classes.
class Threads : public testing::Test {
protected:
    Threads() {
        std::filesystem::create_directory(folder_);
        std::ofstream registry(folder_ / "registry.reg");
        registry << "REGEDIT4\n";
        for (int i = 0; i < handlers; ++i) {
            registry << "[HKLM\\SOFTWARE\\Korvane\\Quillmark\\Handlers]\n\"H" << i << "\"=\"Test.Echo" << i << "\"\n"
                     << "[HKLM\\SOFTWARE\\Classes\\Test.Echo" << i
                     << "]\n\"NativeLibrary\"=\"" VELMOR_TEST_NATIVE_LIBRARY "\"\n";
        }
    }
    ~Threads() override { std::filesystem::remove_all(folder_); }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("velmor-threads-" + std::to_string(getpid()));
};

// Tags of every handler, from one of them, and their results.
struct Template {
    std::u16string text = u"{\\rtf1 ", result = text;

    explicit Template(int first) {
        for (int i = 0; i < handlers; ++i) {
            const std::string number = std::to_string((first + i) % handlers);
            const std::u16string name(number.begin(), number.end());
            text += u"<KV:H" + name + u">N" + name + u":</KV><KV:TAG>PROPERTY:p=0:</KV>,";
            result += u"N" + name + u"7,";
        }
        text += u'}';
        result += u'}';
    }
};

TEST_F(Threads, WorkAtTheSameTimeWithTheirOwnObjects) {
    platform::SystemServices machine({(folder_ / "registry.reg").u16string(), {}, false});
    std::array<std::u16string, threadCount> results;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            const auto tag = std::make_shared<kvTag>(machine.services());
            tag->Properties().put(u"p", automation::Variant(7));
            tag->Value(Template(i * handlers / threadCount).text);
            results[static_cast<std::size_t>(i)] = tag->CleanRTFByVal(tag->Result());
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (int i = 0; i < threadCount; ++i) {
        const std::u16string expected = Template(i * handlers / threadCount).result;
        const auto tag = std::make_shared<kvTag>(machine.services());
        EXPECT_TRUE(results[static_cast<std::size_t>(i)] == tag->CleanRTFByVal(expected)) << i;
    }
}

}  // namespace
}  // namespace velmor

#endif
