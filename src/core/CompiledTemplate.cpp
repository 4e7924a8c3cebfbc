#include "core/CompiledTemplate.h"

#include <utility>

#include "core/Dispatch.h"
#include "rtf/tables/TableMarkers.h"

namespace velmor {

CompiledTemplate::CompiledTemplate(platform::Services& services, std::u16string text, std::u16string_view handler)
    : isRtf_(text.starts_with(rtfStart)) {
    addTableMarkers(text, services.guids);
    text_ = std::make_shared<const std::u16string>(std::move(text));
    tags_ = searchTags(services, handler, *text_);
}

}  // namespace velmor
