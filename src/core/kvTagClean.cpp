// kvTag: cleaning RTF.

#include "core/Options.h"
#include "core/TimingLog.h"
#include "core/kvTag.h"
#include "rtf/clean/CleanRTF.h"
#include "rtf/clean/FinishCleaning.h"
#include "rtf/read/RtfReader.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

CleanOptions optionsOf(kvTag& tag) {
    CleanOptions options;
    options.mergeMode = tag.CleanRTFMergeMode();
    options.tolerant = isTolerant(tag.services(), tag.Properties());
    options.styles = styleConflictOf(tag.Properties().getText(u"kvTag.Styles", automation::Variant(u"")));
    return options;
}

void clean(platform::Services& services, std::u16string& text, const CleanOptions& options) noexcept {
    const TimedStage stage(services, LogType::cleaning);
    Module1::CleanRTFText(text, options, services);
    if (stage) stage.finish(decimal(text.size()));
}

}  // namespace

void cleanAsTag(platform::Services& services, std::u16string& text, const CleanOptions& options) noexcept {
    TimingLog::readSettings(services);
    clean(services, text, options);
}

bool kvTag::CleanRTFFile(std::u16string_view psFileName, std::u16string_view psSaveFileName) {
    const std::shared_ptr<Object> alive = keep();
    const CleanOptions options = optionsOf(*this);
    bool saved = false;
    attempt([&] {
        auto bytes = services_.files.read(psFileName);
        if (!bytes) return;
        std::u16string text = fromAnsi(*bytes);
        bytes.reset();
        clean(services_, text, options);
        saved = services_.files.write(psSaveFileName.empty() ? psFileName : psSaveFileName, toAnsi(text));
    });
    return saved;
}

void kvTag::CleanRTF(std::u16string& psRTF) {
    const std::shared_ptr<Object> alive = keep();
    clean(services_, psRTF, optionsOf(*this));
}

std::u16string kvTag::CleanRTFByVal(std::u16string psRTF) {
    CleanRTF(psRTF);
    return psRTF;
}

}  // namespace velmor
