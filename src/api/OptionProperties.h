#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/Variant.h"
#include "core/Options.h"
#include "properties/privProperties.h"
#include "velmor/velmor.h"

namespace velmor::api {

// Options as properties, which evaluation and checks read. Afterwards the collection has its own again.
class OptionProperties {
public:
    OptionProperties(privProperties& properties, const EvaluateOptions& options) : properties_(properties) {
        static constexpr std::u16string_view missing[] = {u"empty", u"keep", u"mark", u"fail"};
        static constexpr std::u16string_view dataTags[] = {u"allow", u"report", u"refuse"};
        if (options.exact || !properties.Item(tolerantProperty))
            put(tolerantProperty, automation::Variant(!options.exact));
        if (options.missing != Missing::empty) put(u"kvTag.Missing", missing[static_cast<int>(options.missing)]);
        if (options.dataTags != DataTags::allow) put(u"kvTag.Data Tags", dataTags[static_cast<int>(options.dataTags)]);
        if (options.includeRoot) put(u"kvTag.Include Root", *options.includeRoot);
        if (!options.includePath.empty()) put(u"Path", options.includePath);
    }
    ~OptionProperties() {
        for (auto& [name, before] : before_) {
            if (before) {
                properties_.Add(name, std::move(*before), true);
            } else {
                properties_.Remove(automation::Variant(name));
            }
        }
    }
    OptionProperties(const OptionProperties&) = delete;
    OptionProperties& operator=(const OptionProperties&) = delete;

private:
    void put(std::u16string_view name, automation::Variant value) {
        const PropertyRef present = properties_.Item(name);
        before_.emplace_back(name, present ? std::optional(present->Value()) : std::nullopt);
        properties_.Add(name, std::move(value), true);
    }

    privProperties& properties_;
    std::vector<std::pair<std::u16string_view, std::optional<automation::Variant>>> before_;  // by constants
};

}  // namespace velmor::api
