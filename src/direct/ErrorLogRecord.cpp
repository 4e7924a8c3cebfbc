#include "direct/ErrorLogRecord.h"

#include <vector>

#include "automation/Convert.h"
#include "automation/Errors.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::int32_t kEventCategory = 64;  // the host database's own number, passed on as it is

std::u16string textOf(const Variant& value) {
    std::optional<std::u16string> text = automation::toText(value);
    if (!text) automation::raiseTypeMismatch();
    return *std::move(text);
}

std::u16string messageOf(const privProperty& entry, const privProperties& details) {
    std::u16string message = entry.ValueStr();
    message += u"\r\nTag Data: " + textOf(details.GetValue(u"TagData", Variant(u"-")));
    message += u"\r\nErr Data: " + textOf(details.GetValue(u"ErrData", Variant(u"-")));
    message += u"\r\nTag Error Date: " + textOf(details.GetValue(u"DateTime", Variant(std::int32_t{0})));
    return message;
}

}  // namespace

void recordErrorLog(const privProperties& log, automation::Object& database) {
    // The database may add to the log meanwhile.
    std::vector<PropertyRef> entries;
    for (std::int32_t index = 1; index <= log.Count(); ++index) entries.push_back(log.Item(index));
    for (const PropertyRef& entry : entries) {
        const PropertiesRef details = entry->Properties();
        const std::int32_t number = automation::toLong(details->GetValue(u"Err", Variant(std::int32_t{0}))).value_or(0);
        Variant arguments[] = {Variant(std::u16string(entry->Name())), Variant(messageOf(*entry, *details)),
                               Variant(number), Variant(kEventCategory)};
        database.invoke(u"LogEvent", automation::InvokeKind::method, arguments);
    }
}

}  // namespace velmor
