#include "check/PropertyCheck.h"

#include <map>

#include "check/Suggestion.h"
#include "text/Compare.h"

namespace velmor {

void PropertyCheck::read(const TagParts& tag) {
    if (!tag.parameters().empty()) reads_.push_back({&tag.file(), &tag.tag()});
}

void PropertyCheck::set(const TagParts& tag) {
    if (tag.parameters().empty()) return;
    const std::u16string name = tag.parameters().front().name();
    if (isLiteral(name)) set_.insert(upperCase(name));
}

void PropertyCheck::setByRows(privProperties& list) {
    for (const char16_t* const name : {u"INDEX", u"COUNT", u"FIRST", u"LAST", u"VALUE"}) set_.insert(name);
    setByRows(list, 0);
}

void PropertyCheck::setByRows(privProperties& list, int level) {
    if (level > privProperties::maximumNesting) return;
    for (std::int32_t index = 1; index <= list.Count(); ++index) {
        const PropertyRef property = list.Item(index);
        if (level > 0) set_.insert(upperCase(property->Name()));
        if (property->HasProperties()) setByRows(*property->Properties(), level + 1);
    }
}

bool PropertyCheck::isSetByTemplate(std::u16string_view name) const {
    return set_.count(upperCase(name)) != 0;
}

PropertyRef PropertyCheck::known(std::u16string_view name) const {
    return given_ && !isSetByTemplate(name) ? given_->Item(name) : nullptr;
}

// Of a property without a default, or with an empty one.
bool PropertyCheck::isUnset(const TagElement& parameter) const {
    const std::u16string name = parameter.name();
    const bool isRequired = !parameter.hasValue() || parameter.isEmptyText();
    return isRequired && isLiteral(name) && !name.empty() && !isSetByTemplate(name) && !given_->Item(name);
}

void PropertyCheck::reportUnset() {
    if (!given_) return;
    std::vector<std::u16string> names(set_.begin(), set_.end());
    for (std::int32_t index = 1; index <= given_->Count(); ++index) names.push_back(given_->Item(index)->Name());
    std::map<std::u16string, std::u16string> hints;
    for (const Read& read : reads_) {
        const TagParts tag(*read.file, *read.tag);
        const TagElement& parameter = tag.parameters().front();
        if (!isUnset(parameter)) continue;
        const auto [hint, isNew] = hints.try_emplace(parameter.name());
        if (isNew) hint->second = didYouMean(hint->first, names);
        if (parameter.hasValue() && hint->second.empty()) continue;
        const auto code = parameter.hasValue() ? DiagnosticCode::similarPropertySet : DiagnosticCode::unsetProperty;
        found_.add(code, tag.file(), tag.tag(), u"nothing sets the property " + hint->first, hint->second);
    }
}

std::vector<PropertyUse> PropertyCheck::uses() const {
    std::vector<PropertyUse> uses;
    std::set<std::u16string> seen;
    for (const Read& read : reads_) {
        const TagParts tag(*read.file, *read.tag);
        const TagElement& parameter = tag.parameters().front();
        const std::u16string name = parameter.name();
        if (name.empty() || !isLiteral(name) || !seen.insert(upperCase(name)).second) continue;
        uses.push_back({name, isSetByTemplate(name), parameter.hasValue() ? parameter.read(services_) : nullptr});
    }
    return uses;
}

}  // namespace velmor
