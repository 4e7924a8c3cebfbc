#include "automation/Errors.h"

#include <algorithm>
#include <string>

#include "text/ErrorSource.h"

namespace velmor::automation {

namespace {

struct ErrorText {
    std::int32_t number;
    std::u16string_view text;
};
constexpr ErrorText kTexts[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {13, u"Type mismatch"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class does not support Automation or does not support expected interface"},
    {438, u"Object doesn't support this property or method"},
    {450, u"Wrong number of arguments or invalid property assignment"},
};

}  // namespace

std::u16string errorText(std::int32_t number) {
    const auto* const found = std::ranges::find(kTexts, number, &ErrorText::number);
    return std::u16string(found == std::end(kTexts) ? u"Automation error" : found->text);
}

ArgumentError::ArgumentError(std::int32_t number, std::size_t argument)
    : Error(number, kErrorSource, errorText(number)), argument_(argument) {}

void raiseTypeMismatch() {
    throw Error(13, kErrorSource, errorText(13));
}

void raiseNoSuchMember(std::u16string_view name) {
    std::u16string description = errorText(438);
    if (!name.empty()) description.append(u": '").append(name).append(u"'");
    throw Error(438, kErrorSource, std::move(description));
}

void raiseWrongArguments() {
    throw Error(450, kErrorSource, errorText(450));
}

}  // namespace velmor::automation
