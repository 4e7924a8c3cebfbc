#include "api/OptionProperties.h"

namespace velmor::api {

using automation::Variant;

OptionProperties::OptionProperties(privProperties& properties, const EvaluateOptions& options)
    : properties_(properties) {
    static constexpr std::u16string_view missing[] = {u"empty", u"keep", u"mark", u"fail"};
    static constexpr std::u16string_view dataTags[] = {u"allow", u"report", u"refuse"};
    if (options.exact || !properties.Item(tolerant)) put(tolerant, Variant(!options.exact));
    if (options.missing != Missing::empty) put(u"kvTag.Missing", missing[static_cast<int>(options.missing)]);
    if (options.dataTags != DataTags::allow) put(u"kvTag.Data Tags", dataTags[static_cast<int>(options.dataTags)]);
    if (options.includeRoot) put(u"kvTag.Include Root", *options.includeRoot);
    if (!options.includePath.empty()) put(u"Path", options.includePath);
}

OptionProperties::~OptionProperties() {
    for (auto& [name, before] : before_) {
        if (before) {
            properties_.Add(name, std::move(*before), true);
        } else {
            properties_.Remove(Variant(name));
        }
    }
}

void OptionProperties::put(std::u16string_view name, Variant value) {
    const PropertyRef present = properties_.Item(name);
    before_.emplace_back(name, present ? std::optional(present->Value()) : std::nullopt);
    properties_.Add(name, std::move(value), true);
}

}  // namespace velmor::api
