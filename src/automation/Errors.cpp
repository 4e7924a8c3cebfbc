#include "automation/Errors.h"

#include <string>

#include "text/ErrorSource.h"

namespace velmor::automation {

namespace {

std::u16string descriptionOf(std::int32_t number) {
    switch (number) {
        case 6:
            return u"Overflow";
        case 13:
            return u"Type mismatch";
        case 438:
            return u"Object doesn't support this property or method";
        default:
            return u"Wrong number of arguments or invalid property assignment";
    }
}

}  // namespace

ArgumentError::ArgumentError(std::int32_t number, std::size_t argument)
    : Error(number, kErrorSource, descriptionOf(number)), argument_(argument) {}

void raiseTypeMismatch() {
    throw Error(13, kErrorSource, descriptionOf(13));
}

void raiseNoSuchMember(std::u16string_view name) {
    std::u16string description = descriptionOf(438);
    if (!name.empty()) description.append(u": '").append(name).append(u"'");
    throw Error(438, kErrorSource, std::move(description));
}

void raiseWrongArguments() {
    throw Error(450, kErrorSource, descriptionOf(450));
}

}  // namespace velmor::automation
