#include "cli/Cleaning.h"

#include <memory>

#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {

void clean(platform::Services& services, std::u16string& text, const Cleaning& how, MergeReport* report) {
    const auto tag = std::make_shared<kvTag>(services);
    tag->Properties().own()->AddBoolean(u"kvTag.RTF Tolerant", !how.exact, true);
    tag->Properties().own()->AddStr(u"kvTag.Styles", fromUtf8(how.styles), true);
    tag->CleanRTFMergeMode(how.mergeMode);
    tag->CleanRTF(text, report);
    tag->Dispose();
}

CleanOptions cleanOptions(const Cleaning& how) {
    CleanOptions options;
    options.mergeMode = how.mergeMode;
    options.tolerant = !how.exact;
    options.styles = styleConflictOf(fromUtf8(how.styles));
    return options;
}

std::size_t positionOfTag(std::u16string_view text) noexcept {
    return findText(text, u"<KV:", 0, Comparison::text) + 1;  // npos becomes 0
}

}  // namespace velmor::cli
