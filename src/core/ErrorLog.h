#pragma once

#include <cstdint>
#include <string_view>

#include "core/EvaluationRun.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;

struct ErrorLogEntry {
    std::u16string_view handler;
    std::u16string_view message;
    std::int32_t number = 0;
    std::u16string_view tagData;
    std::u16string_view errorData;
};

// Adds an entry of its own (also where the handler has one): named after the handler, its value
// the message, with child properties "DateTime" (always), "Err" (not 0), "TagData" and "ErrData"
// (not empty). One top-level evaluation adds maximumLogEntries entries and one last entry, which
// counts the others. Never raises: an entry that finds no memory is left out.
void addErrorLogEntry(platform::Services& services, privProperties& log, const ErrorLogEntry& entry) noexcept;

// Adds an entry for the exception that is being handled: its text and number, the tag's name as its
// tag data.
void logFailure(platform::Services& services, privProperties& log, std::u16string_view handler,
                std::u16string_view tagName) noexcept;

// Hears of every entry that this thread adds while the listener lives, including those that the log
// only counts. The listener made last hears alone.
class ErrorListener {
public:
    ErrorListener() noexcept : before_(current_) { current_ = this; }
    virtual ~ErrorListener() { current_ = before_; }
    ErrorListener(const ErrorListener&) = delete;
    ErrorListener& operator=(const ErrorListener&) = delete;

    // `tag` is the tag of the outermost text whose answer led to the entry. The views last for the call.
    virtual void heard(const ErrorLogEntry& entry, const OutermostTag& tag) = 0;

    static ErrorListener* current() noexcept { return current_; }

private:
    static constinit inline thread_local ErrorListener* current_ = nullptr;

    ErrorListener* const before_;
};

}  // namespace velmor
