#include "core/TimingLog.h"

#include <algorithm>
#include <cmath>
#include <forward_list>
#include <mutex>

#include "automation/Convert.h"
#include "common/TextFile.h"
#include "core/Markup.h"
#include "core/Options.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

struct TimingLog::Target {
    std::u16string file;
    std::u16string machine;
    bool operator==(const Target&) const = default;
};

namespace {

constexpr std::int32_t nothing = 1;  // no line has this bit: the settings are read, nothing is on

struct StageWord {
    LogType type;
    std::u16string_view word;
};
constexpr StageWord stageWords[] = {{LogType::dispatch, u" EVTAG  "},
                                    {LogType::tagCollection, u" TAGCOL "},
                                    {LogType::cleaning, u" CLNRTF "},
                                    {LogType::result, u" GENRES "}};

std::u16string padded(std::int64_t number, std::size_t width) {
    const std::u16string digits = decimal(number);
    return std::u16string(width - std::min(width, digits.size()), u'0') + digits;
}

std::u16string timeText(automation::Date date) {
    const automation::DateFields at = automation::dateFields(date);
    return padded(at.day, 2) + u'/' + padded(at.month, 2) + u'/' + padded(at.year, 4) + u' ' + padded(at.hour, 2) +
           u':' + padded(at.minute, 2) + u':' + padded(at.second, 2);
}

// "0000.000", of the time as a single.
std::u16string secondsText(double seconds) {
    constexpr double most = 1e9;
    const double single = std::clamp<double>(static_cast<float>(seconds), 0, most);
    const std::int64_t milliseconds = std::llround(single * 1000);
    return padded(milliseconds / 1000, 4) + u'.' + padded(milliseconds % 1000, 3);
}

std::u16string onOneLine(std::u16string_view text) {
    std::u16string line(text);
    const auto isControl = [](char16_t unit) { return unit < u' ' || (unit >= 0x7F && unit < 0xA0); };
    std::replace_if(line.begin(), line.end(), isControl, u' ');
    return line;
}

}  // namespace

TimingLog::Target TimingLog::targetOf(platform::Services& services) {
    const char16_t separator = services.folders.separator();
    const std::u16string folder = services.folders.commonData() + separator + u"Pellmar" + separator + u"Logs";
    const automation::DateFields today = automation::dateFields(services.clock.now());
    services.files.makeFolder(folder);
    const std::u16string machine = services.folders.machineName();
    return {folder + separator + u"VelmorLog-" + padded(today.year, 4) + padded(today.month, 2) + padded(today.day, 2) +
                u".log",
            onOneLine(machine).substr(std::min(machine.find_first_not_of(u'\\'), machine.size()))};
}

// Threads of one day share an entry, so there are few, and all exist until the program ends.
const TimingLog::Target& TimingLog::keep(Target target) {
    static std::mutex mutex;
    static std::forward_list<Target> kept;
    const std::scoped_lock lock(mutex);
    const auto known = std::find(kept.begin(), kept.end(), target);
    return known != kept.end() ? *known : kept.emplace_front(std::move(target));
}

void TimingLog::readNow(platform::Services& services) noexcept {
    types_ = nothing;
    try {
        const std::u16string option = services.registry.value(platform::optionsKey, u"Logging Types").value_or(u"1");
        const std::int32_t types = automation::toLong(automation::Variant(option)).value_or(0);
        if (types == 0) return;
        target_ = &keep(targetOf(services));
        types_ = types;
    } catch (const std::exception&) {
        // The thread has no log.
    }
}

void TimingLog::write(platform::Services& services, LogType type, double seconds, std::u16string_view detail) noexcept {
    if (target_ == nullptr) return;
    try {
        std::u16string line = timeText(services.clock.now()) + u' ' + target_->machine;
        line.append(std::ranges::find(stageWords, type, &StageWord::type)->word)
            .append(secondsText(seconds))
            .append(u" ")
            .append(onOneLine(detail))
            .append(u"\r\n");
        appendTextFile(services.files, target_->file, line, true);
    } catch (const std::exception&) {
        // The line is lost; the stage continues.
    }
}

void TimedStage::finish(std::u16string_view detail) const noexcept {
    if (isOn_) TimingLog::write(services_, type_, services_.clock.timer() - start_, detail);
}

std::u16string searchDetail(std::u16string_view handler, std::u16string_view text, const TopLevelTags& found) {
    std::int32_t turns = 0;
    auto tag = found.tags.begin();
    for (std::size_t at = findOpeningMarker(text, 0); at != text.npos; ++turns) {
        const bool isTag = tag != found.tags.end() && tag->open == at;
        at = findOpeningMarker(text, isTag ? (tag++)->end() : at + closingMarker.size());
    }
    return std::u16string(handler) + u' ' + decimal(turns);
}

}  // namespace velmor
