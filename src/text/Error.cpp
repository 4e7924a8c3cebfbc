#include "text/Error.h"

#include <algorithm>
#include <string_view>

#include "text/Encoding.h"

namespace velmor {

namespace {

struct ErrorText {
    std::int32_t number;
    std::u16string_view text;
};
constexpr ErrorText texts[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {13, u"Type mismatch"},
    {17, u"Can't perform requested operation"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class does not support Automation or does not support expected interface"},
    {438, u"Object doesn't support this property or method"},
    {450, u"Wrong number of arguments or invalid property assignment"},
};

}  // namespace

std::u16string errorText(std::int32_t number) {
    const auto* const found = std::ranges::find(texts, number, &ErrorText::number);
    return std::u16string(found == std::end(texts) ? u"Automation error" : found->text);
}

Error::Error(std::int32_t number, std::u16string source, std::u16string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)), what_(toUtf8(description_)) {}

}  // namespace velmor
