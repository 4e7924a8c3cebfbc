#include "core/ErrorLog.h"

#include "properties/privProperties.h"

namespace velmor {

void addErrorLogEntry(platform::Services& services, privProperties& log, const ErrorLogEntry& entry) {
    const PropertyRef property = log.AddStr(entry.handler, std::u16string(entry.message), false);
    const PropertiesRef details = property->Properties();
    details->AddDate(u"DateTime", services.clock.now());
    if (entry.number != 0) details->AddLng(u"Err", entry.number);
    if (!entry.tagData.empty()) details->AddStr(u"TagData", std::u16string(entry.tagData));
    if (!entry.errorData.empty()) details->AddStr(u"ErrData", std::u16string(entry.errorData));
}

}  // namespace velmor
