#include "check/TagParts.h"

#include <algorithm>

#include "core/Markup.h"
#include "core/TagList.h"
#include "properties/EntryName.h"
#include "properties/EntryScanner.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::u16string_view parameterSeparator = u":";
constexpr std::size_t markerSize = 4;  // "~64\""

// The end of the value at `from`, as the reader of properties finds it.
std::size_t valueEnd(EntryScanner& scanner, std::size_t from) {
    const std::u16string_view text = scanner.text();
    std::size_t end = EntryScanner::npos;
    if (text[from] == u'"') end = scanner.closingQuote(from + 1);
    if (text[from] == u'~') end = scanner.closingQuote(std::min(from + markerSize, text.size()));
    if (text[from] == u'#') end = scanner.closingHash(from + 1);
    return end == EntryScanner::npos ? std::min(scanner.tagValueEnd(from), text.size()) : end + 1;
}

}  // namespace

std::u16string TagElement::name() const {
    return cleanName(text_.substr(0, nameSize_));
}

bool TagElement::isEmptyText() const noexcept {
    return hasValue() && (writtenValue().empty() || writtenValue() == u"\"\"");
}

PropertyRef TagElement::read(platform::Services& services) const {
    privProperties one(services);
    one.BuildList(storedName(text_));
    return one.Item(1);
}

TagParts::TagParts(const TemplateFile& file, const TemplateTag& tag) : file_(file), tag_(tag) {
    const std::u16string_view inner = file.innerOf(tag);
    const std::size_t separator = inner.find(handlerSeparator);
    handler_ = upperCase(inner.substr(0, separator));
    std::u16string_view elements = inner.substr(separator + 1);
    if (!elements.ends_with(parameterSeparator)) elements = closed_ = storedName(elements);
    readElements(elements);
}

void TagParts::readElements(std::u16string_view text) {
    EntryScanner scanner(text, parameterSeparator);
    std::size_t from = 0;
    for (std::size_t nameEnd; (nameEnd = scanner.nameEnd(from)) != EntryScanner::npos;) {
        const std::size_t end = text[nameEnd] == u'=' ? valueEnd(scanner, nameEnd + 1) : nameEnd;
        const TagElement element(text.substr(from, end - from), nameEnd - from);
        if (from == 0) {
            commandElement_ = element;
            command_ = upperCase(element.name());
        } else {
            parameters_.push_back(element);
        }
        from = end + parameterSeparator.size();
    }
}

std::u16string TagParts::commandValue(platform::Services& services) const {
    return command_.empty() ? std::u16string() : commandElement_.value(services);
}

const TagElement* TagParts::find(std::u16string_view name) const {
    const auto found = std::find_if(parameters_.begin(), parameters_.end(),
                                    [&](const TagElement& each) { return equalIgnoringCase(each.name(), name); });
    return found == parameters_.end() ? nullptr : &*found;
}

bool isLiteral(std::u16string_view text) noexcept {
    return findOpeningMarker(text, 0) == text.npos;
}

}  // namespace velmor
