#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/Variant.h"
#include "properties/privProperties.h"
#include "velmor/velmor.h"

namespace velmor::api {

inline constexpr std::u16string_view tolerant = u"kvTag.RTF Tolerant";

// Options as properties, which evaluation and checks read. Afterwards the collection has its own again.
class OptionProperties {
public:
    OptionProperties(privProperties& properties, const EvaluateOptions& options);
    ~OptionProperties();
    OptionProperties(const OptionProperties&) = delete;
    OptionProperties& operator=(const OptionProperties&) = delete;

private:
    void put(std::u16string_view name, automation::Variant value);

    privProperties& properties_;
    std::vector<std::pair<std::u16string_view, std::optional<automation::Variant>>> before_;  // by constants
};

}  // namespace velmor::api
