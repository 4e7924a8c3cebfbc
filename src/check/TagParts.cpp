#include "check/TagParts.h"

#include <algorithm>

#include "core/Markup.h"
#include "core/TagList.h"
#include "text/Compare.h"

namespace velmor {

TagParts::TagParts(platform::Services& services, const TemplateFile& file, const TemplateTag& tag)
    : file_(file), tag_(tag), elements_(std::make_shared<privProperties>(services)) {
    const std::u16string_view inner = file.innerOf(tag);
    elements_->BuildByVal(storedName(inner), false, true, u":");
    handler_ = upperCase(inner.substr(0, inner.find(kHandlerSeparator)));
    if (const PropertyRef command = elements_->Item(2)) command_ = upperCase(command->Name());
}

std::u16string TagParts::commandValue() const {
    const PropertyRef command = elements_->Item(2);
    return command ? command->ValueStr() : std::u16string();
}

// Of the first parameter's name between the markers.
TextRange TagParts::parameterRange() const {
    const std::u16string_view inner = file_.innerOf(tag_);
    const std::size_t command = std::min(inner.find(kElementSeparator, inner.find(kHandlerSeparator)), inner.size());
    const std::size_t begin = std::min(inner.find_first_not_of(u" \t\r\n:", command), inner.size());
    return {begin, std::min(inner.find_first_of(u"=:", begin), inner.size())};
}

std::u16string TagParts::parameterName() const {
    const PropertyRef parameter = elements_->Item(kFirstParameter);
    if (!parameter) return {};
    const std::u16string_view written = parameterRange().of(file_.innerOf(tag_));
    return equalIgnoringCase(written, parameter->Name()) ? std::u16string(written) : parameter->Name();
}

bool TagParts::parameterHasValue() const {
    const std::u16string_view inner = file_.innerOf(tag_);
    const TextRange name = parameterRange();
    return name.end < inner.size() && inner[name.end] == u'=';
}

bool isLiteral(std::u16string_view text) noexcept {
    return findOpeningMarker(text, 0) == text.npos;
}

}  // namespace velmor
