#include "automation/Errors.h"
#include "text/ErrorSource.h"

#include <string>

namespace velmor::automation {

void raiseTypeMismatch() {
    throw Error(13, kErrorSource, u"Type mismatch");
}

void raiseNoSuchMember(std::u16string_view name) {
    std::u16string description = u"Object doesn't support this property or method";
    if (!name.empty()) description.append(u": '").append(name).append(u"'");
    throw Error(438, kErrorSource, std::move(description));
}

void raiseWrongArguments() {
    throw Error(450, kErrorSource, u"Wrong number of arguments or invalid property assignment");
}

}  // namespace velmor::automation
