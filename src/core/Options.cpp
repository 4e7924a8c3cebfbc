#include "core/Options.h"

#include "automation/Convert.h"
#include "core/Collection.h"
#include "text/Compare.h"

namespace velmor {

bool isOption(std::u16string_view psName) noexcept {
    constexpr std::u16string_view prefix = u"kvTag.";
    return equalIgnoringCase(psName.substr(0, prefix.size()), prefix);
}

bool isTolerant(const platform::Services& services, const Collection& properties) noexcept {
    try {
        if (const auto own = properties.find(tolerantProperty)) return automation::truth(*own);
        const std::u16string option = services.registry.value(platform::optionsKey, u"RTF Tolerant").value_or(u"0");
        return automation::truth(automation::Variant(option));
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace velmor
