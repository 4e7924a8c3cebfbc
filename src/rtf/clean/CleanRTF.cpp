#include "rtf/clean/CleanRTF.h"

#include "rtf/clean/FinishCleaning.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TableCollection.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/pages/HeadersFooters.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

// One run over one text. The steps are those of docs/cleaning.md; a step whose groups do not occur costs nothing.
class Run {
public:
    Run(std::u16string& text, const CleanOptions& options, platform::Guids& guids)
        : text_(text), options_(options), guids_(guids) {}

    void clean() {
        const auto mark = TableCollection::unusedMark(text_);
        if (!mark) return;
        TableCollection tables(*mark);
        const bool merged = attempt([&] { merge(tables); });
        if (merged) attempt([&] { bracketTables(tables); });
        // Lifted texts return even after a failure.
        if (!attempt([&] { tables.expand(text_); }) || !merged) return;
        PartOfText whole;
        attempt([&] { finishCleaning(text_, options_, guids_, groups_, hasDocuments_, whole); });
    }

private:
    // Steps 1 and 2, and headers and footers.
    void merge(TableCollection& tables) {
        hasDocuments_ = Module1::ExtractEmbeddedDocuments(text_, tables, options_);
        Module1::MergeDocumentTables(text_, tables, options_);
        if (!options_.mergeMode) Module1::ApplyHeadersFooters(text_, tables, options_);
        groups_ = tables.hostGroups();
        for (const TableCollection::Document& document : tables.documents()) groups_.add(document.groups);
    }

    // Step 3: the tables of each text, while the tables inside them are still lifted.
    void bracketTables(TableCollection& tables) {
        if (addTableMarkers(text_, guids_)) groups_.add(Group::tableMarker);
        for (TableCollection::Document& document : tables.documents()) {
            if (addTableMarkers(document.text, guids_)) groups_.add(Group::tableMarker);
        }
    }

    std::u16string& text_;
    CleanOptions options_;
    platform::Guids& guids_;
    bool hasDocuments_ = false;
    GroupSet groups_;
};

}  // namespace

bool Module1::isOverrunProtectionOn(const platform::Registry& registry) {
    const auto value = registry.value(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"RTF Table Overrun Protection");
    return !value || *value == u"1";
}

bool Module1::isCleanable(std::u16string_view psText) noexcept {
    const bool holdsDocument = RtfSearch(psText).find(u"\\rtf1", 0) != psText.npos;
    return holdsDocument && findText(psText, u"<KV:", 0, Comparison::text) == psText.npos;
}

void Module1::CleanRTFText(std::u16string& psText, CleanOptions options, CleanHost& host) noexcept {
    const bool timed = host.timesCleaning();
    const double start = timed ? host.services().clock.timer() : 0;
    if (isCleanable(psText)) {
        attempt([&] {
            options.overrunProtection = isOverrunProtectionOn(host.services().registry);
            Run(psText, options, host.services().guids).clean();
        });
    }
    if (timed) host.cleaned(host.services().clock.timer() - start, static_cast<std::int32_t>(psText.size()));
}

bool Module1::CleanRTFFileText(std::u16string_view psFileName, std::u16string_view psSaveFileName,
                               const CleanOptions& options, CleanHost& host) noexcept {
    bool saved = false;
    attempt([&] {
        platform::Files& files = host.services().files;
        auto bytes = files.read(psFileName);
        if (!bytes) return;
        std::u16string text = fromAnsi(*bytes);
        bytes.reset();
        CleanRTFText(text, options, host);
        saved = SaveTextFile(text, psSaveFileName.empty() ? psFileName : psSaveFileName, files);
    });
    return saved;
}

bool Module1::SaveTextFile(std::u16string_view psText, std::u16string_view psFileName,
                           platform::Files& files) noexcept {
    bool saved = false;
    attempt([&] { saved = files.write(psFileName, toAnsi(psText)); });
    return saved;
}

}  // namespace velmor
