#include "core/ErrorLog.h"

#include "properties/privProperties.h"
#include "rtf/read/RtfReader.h"
#include "text/Error.h"

namespace velmor {

namespace {

PropertyRef add(platform::Services& services, privProperties& log, const ErrorLogEntry& entry) {
    PropertyRef property = log.AddStr(entry.handler, std::u16string(entry.message), false);
    const PropertiesRef details = property->Properties();
    details->AddDate(u"DateTime", services.clock.now());
    if (entry.number != 0) details->AddLng(u"Err", entry.number);
    if (!entry.tagData.empty()) details->AddStr(u"TagData", std::u16string(entry.tagData));
    if (!entry.errorData.empty()) details->AddStr(u"ErrData", std::u16string(entry.errorData));
    return property;
}

void addOrCount(platform::Services& services, privProperties& log, const ErrorLogEntry& entry) {
    LogEntryCount* const entries = EvaluationRun::current().logEntries;
    if (entries == nullptr || ++entries->count <= maximumLogEntries) {
        add(services, log, entry);
        return;
    }
    const std::u16string message = decimal(entries->count - maximumLogEntries) + u" more errors are not listed";
    if (entries->last) {
        entries->last->SetValueQuiet(automation::Variant(message));
    } else {
        entries->last = add(services, log, {entry.handler, message, 0, {}, {}});
    }
}

}  // namespace

void addErrorLogEntry(platform::Services& services, privProperties& log, const ErrorLogEntry& entry) noexcept {
    try {
        ErrorListener* const listener = ErrorListener::current();
        if (listener != nullptr) listener->heard(entry, EvaluationRun::current().outermostTag);
        addOrCount(services, log, entry);
    } catch (const std::exception&) {
        // No memory for the entry: evaluation goes on.
    }
}

void logFailure(platform::Services& services, privProperties& log, std::u16string_view handler,
                std::u16string_view tagName) noexcept {
    try {
        throw;
    } catch (const Error& error) {
        addErrorLogEntry(services, log, {handler, error.description(), error.number(), tagName, {}});
    } catch (const std::exception&) {
        addErrorLogEntry(services, log, {handler, u"Out of memory", 7, tagName, {}});
    }
}

}  // namespace velmor
