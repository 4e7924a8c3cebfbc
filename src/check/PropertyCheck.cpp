#include "check/PropertyCheck.h"

#include <map>

#include "check/Suggestion.h"
#include "text/Compare.h"

namespace velmor {

void PropertyCheck::read(const TagParts& tag) {
    const std::u16string name = tag.parameterName();
    if (name.empty() || !isLiteral(name)) return;
    const PropertyRef parameter = tag.elements().Item(TagParts::kFirstParameter);
    reads_.push_back({&tag.file(), &tag.tag(), {name, tag.parameterHasValue(), parameter->Value()}});
}

void PropertyCheck::set(const TagParts& tag) {
    const PropertyRef parameter = tag.elements().Item(TagParts::kFirstParameter);
    if (parameter && isLiteral(parameter->Name())) set_.insert(upperCase(parameter->Name()));
}

bool PropertyCheck::isSetByTemplate(std::u16string_view name) const {
    return set_.count(upperCase(name)) != 0;
}

std::optional<std::u16string> PropertyCheck::knownValue(std::u16string_view name) const {
    const PropertyRef property = given_ && !isSetByTemplate(name) ? given_->Item(name) : nullptr;
    return property ? std::optional<std::u16string>(property->ValueStr()) : std::nullopt;
}

void PropertyCheck::reportUnset() {
    if (!given_) return;
    std::vector<std::u16string> names(set_.begin(), set_.end());
    for (std::int32_t index = 1; index <= given_->Count(); ++index) names.push_back(given_->Item(index)->Name());
    std::map<std::u16string, std::u16string> hints;
    for (const Read& read : reads_) {
        const PropertyUse& use = read.use;
        const auto* const text = use.value.get<std::u16string>();
        const bool hasText = use.hasDefault && !(text != nullptr && text->empty());
        if (hasText || isSetByTemplate(use.name) || given_->Item(use.name)) continue;
        const auto [hint, isNew] = hints.try_emplace(use.name);
        if (isNew) hint->second = didYouMean(use.name, names);
        if (use.hasDefault && hint->second.empty()) continue;
        found_.add(use.hasDefault ? DiagnosticCode::similarPropertySet : DiagnosticCode::unsetProperty, *read.file,
                   *read.tag, u"nothing sets the property " + use.name, hint->second);
    }
}

std::vector<PropertyUse> PropertyCheck::uses() const {
    std::vector<PropertyUse> uses;
    std::set<std::u16string> seen;
    for (const Read& read : reads_) {
        if (seen.insert(upperCase(read.use.name)).second) uses.push_back(read.use);
    }
    return uses;
}

}  // namespace velmor
