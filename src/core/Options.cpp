#include "core/Options.h"

#include "automation/Convert.h"
#include "core/Collection.h"

namespace velmor {

bool isTolerant(const platform::Services& services, const Collection& properties) noexcept {
    try {
        if (const auto own = properties.find(u"kvTag.RTF Tolerant")) return automation::truth(*own);
        const std::u16string option = services.registry.value(optionsKey, u"RTF Tolerant").value_or(u"0");
        return automation::truth(automation::Variant(option));
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace velmor
