#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor {

struct TopLevelTags;

// The timing log: a text file a day with one line for each stage of evaluation, in the folder
// Pellmar/Logs of the machine-wide data folder, "VelmorLog-yyyymmdd.log", ANSI code page, CR LF:
//
//     05/03/2008 14:22:07 SRV01 EVTAG  0000.016 DATABASE
//
// The registry value "Logging Types", a sum of LogType, turns it on. Each thread reads the value and chooses
// the file once; later changes of value or day have no effect on it. Nothing here raises, and a failing log
// never stops evaluation.
enum class LogType : std::int32_t {
    dispatch = 2,       // EVTAG, each tag that was answered: its handler
    tagCollection = 4,  // TAGCOL, each text searched for tags: its tag's handler, turns of the search
    cleaning = 8,       // CLNRTF, each text cleaned: its length
    result = 16,        // GENRES, each result of a template
};

class TimingLog {
public:
    // The first call on a thread reads the settings; the others cost nothing. Tags call it.
    static void readSettings(platform::Services& services) noexcept {
        if (types_ == 0) readNow(services);
    }
    // False until the thread's settings are read. The last one: for a stage of an evaluation.
    static bool isOn(LogType type) noexcept { return (types_ & static_cast<std::int32_t>(type)) != 0; }
    static bool isOn() noexcept {
        return isOn(LogType::dispatch) || isOn(LogType::tagCollection) || isOn(LogType::result);
    }
    // Does not check isOn. Control characters in the detail become blanks, so that an entry is one line.
    static void write(platform::Services& services, LogType type, double seconds, std::u16string_view detail) noexcept;

private:
    struct Target;

    static void readNow(platform::Services& services) noexcept;
    static Target targetOf(platform::Services& services);
    static const Target& keep(Target target);

    // Trivial values: a destructor at a thread's end would keep the component loaded.
    static constinit inline thread_local std::int32_t types_ = 0;  // 0: not yet read
    static constinit inline thread_local const Target* target_ = nullptr;
};

// Measures one stage from its construction if its type is on; otherwise it costs the test of a bit.
class TimedStage {
public:
    TimedStage(platform::Services& services, LogType type, bool isWanted = true)
        : services_(services), type_(type), isOn_(isWanted && TimingLog::isOn(type)) {
        if (isOn_) start_ = services.clock.timer();
    }

    explicit operator bool() const noexcept { return isOn_; }
    // Writes the stage's line, unless the type is off. A failing stage does not call it.
    void finish(std::u16string_view detail) const noexcept;

private:
    platform::Services& services_;
    LogType type_;
    bool isOn_;
    double start_ = 0;
};

// The detail of a TAGCOL line: the handler and the turns that the search for top-level tags takes, the number
// of tags and of skipped opening markers.
std::u16string searchDetail(std::u16string_view handler, std::u16string_view text, const TopLevelTags& found);

}  // namespace velmor
