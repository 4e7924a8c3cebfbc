// kvTag: cleaning RTF.

#include <utility>

#include "core/Options.h"
#include "core/TimingLog.h"
#include "core/kvTag.h"
#include "rtf/clean/CleanRTF.h"

namespace velmor {
namespace {

class TagCleanHost final : public CleanHost {
public:
    explicit TagCleanHost(platform::Services& services) noexcept : services_(services) {}

    platform::Services& services() noexcept override { return services_; }
    bool timesCleaning() const noexcept override { return TimingLog::isOn(LogType::cleaning); }
    void cleaned(double seconds, std::int32_t length) noexcept override {
        const std::string digits = std::to_string(length);
        TimingLog::write(services_, LogType::cleaning, seconds, std::u16string(digits.begin(), digits.end()));
    }

private:
    platform::Services& services_;
};

CleanOptions optionsOf(kvTag& tag) {
    CleanOptions options;
    options.mergeMode = tag.CleanRTFMergeMode();
    options.tolerant = isTolerant(tag.services(), tag.Properties());
    options.styles = styleConflictOf(tag.Properties().getText(u"kvTag.Styles", automation::Variant(u"")));
    return options;
}

}  // namespace

bool kvTag::CleanRTFFile(std::u16string_view psFileName, std::u16string_view psSaveFileName) {
    const std::shared_ptr<Object> alive = keep();
    TagCleanHost host(services_);
    return Module1::CleanRTFFileText(psFileName, psSaveFileName, optionsOf(*this), host);
}

void kvTag::CleanRTF(std::u16string& psRTF, MergeReport* report) {
    const std::shared_ptr<Object> alive = keep();
    TagCleanHost host(services_);
    CleanOptions options = optionsOf(*this);
    options.report = report;
    Module1::CleanRTFText(psRTF, options, host);
}

std::u16string kvTag::CleanRTFByVal(std::u16string psRTF) {
    CleanRTF(psRTF);
    return psRTF;
}

}  // namespace velmor
