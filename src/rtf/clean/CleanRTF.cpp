#include "rtf/clean/CleanRTF.h"

#include "rtf/clean/FinishCleaning.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TableCollection.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/pages/HeadersFooters.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// One run over one text. The steps are those of docs/cleaning.md; a step whose groups do not occur costs nothing.
void clean(std::u16string& text, const CleanOptions& options, platform::Guids& guids) {
    const auto mark = TableCollection::unusedMark(text);
    if (!mark) return;
    TableCollection tables(*mark);
    bool hasDocuments = false;
    GroupSet groups;
    // Steps 1 and 2, and headers and footers.
    const bool merged = attempt([&] {
        hasDocuments = Module1::ExtractEmbeddedDocuments(text, tables, options);
        Module1::MergeDocumentTables(text, tables, options);
        if (!options.mergeMode) Module1::ApplyHeadersFooters(text, tables, options);
        groups = tables.hostGroups();
        for (const TableCollection::Document& document : tables.documents()) groups.add(document.groups);
    });
    const auto bracketTables = [&](std::u16string& part) {
        if (addTableMarkers(part, guids)) groups.add(Group::tableMarker);
    };
    // Step 3: the tables of each text, while the tables inside them are still lifted.
    if (merged) {
        attempt([&] {
            bracketTables(text);
            for (TableCollection::Document& document : tables.documents()) bracketTables(document.text);
        });
    }
    // Lifted texts return even after a failure.
    if (!attempt([&] { tables.expand(text); }) || !merged) return;
    PartOfText whole;
    attempt([&] { finishCleaning(text, options, guids, groups, hasDocuments, whole); });
}

}  // namespace

bool Module1::isOverrunProtectionOn(const platform::Registry& registry) {
    const auto value = registry.value(platform::optionsKey, u"RTF Table Overrun Protection");
    return !value || *value == u"1";
}

bool Module1::isCleanable(std::u16string_view psText) noexcept {
    const bool holdsDocument = RtfSearch(psText).find(u"\\rtf1", 0) != psText.npos;
    return holdsDocument && findText(psText, u"<KV:", 0, Comparison::text) == psText.npos;
}

void Module1::CleanRTFText(std::u16string& psText, CleanOptions options, const platform::Services& services) noexcept {
    if (!isCleanable(psText)) return;
    attempt([&] {
        options.overrunProtection = isOverrunProtectionOn(services.registry);
        clean(psText, options, services.guids);
    });
}

}  // namespace velmor
