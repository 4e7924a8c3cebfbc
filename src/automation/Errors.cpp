#include "automation/Errors.h"

#include <string>

namespace velmor::automation {

namespace {

constexpr char16_t kSource[] = u"kvVelmor3";

}  // namespace

void raiseTypeMismatch() {
    throw Error(13, kSource, u"Type mismatch");
}

void raiseNoSuchMember(std::u16string_view name) {
    std::u16string description = u"Object doesn't support this property or method";
    if (!name.empty()) description.append(u": '").append(name).append(u"'");
    throw Error(438, kSource, std::move(description));
}

void raiseWrongArguments() {
    throw Error(450, kSource, u"Wrong number of arguments or invalid property assignment");
}

}  // namespace velmor::automation
