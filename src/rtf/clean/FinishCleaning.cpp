#include "rtf/clean/FinishCleaning.h"

#include <utility>

#include "rtf/clean/BlankLines.h"
#include "rtf/clean/Generators.h"
#include "rtf/clean/RemoveBackground.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/KeepSectionWords.h"
#include "rtf/pages/SectionMarkers.h"
#include "rtf/tables/LooseTables.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/RowProtection.h"
#include "text/Compare.h"

namespace velmor {
namespace {

bool mayHaveLooseTables(std::u16string_view text, const CleanOptions& options, GroupSet groups, bool hasDocuments) {
    const bool hasMarkers = groups.has(Group::tableMarker);
    if (hasDocuments) return hasMarkers || options.tolerant;
    return hasMarkers && findText(text, u"\\nestrow", 0, Comparison::binary) != text.npos;
}

}  // namespace

void finishCleaning(std::u16string& text, const CleanOptions& options, platform::Guids& guids, GroupSet groups,
                    bool hasDocuments, PartOfText& part) {
    const auto applySectionMarkers = [&] {
        if (groups.has(Group::section)) attempt([&] { Module1::ApplySectionMarkers(text, options); });
    };
    // Section markers recognise joined documents by their merge markers.
    if (options.tolerant) applySectionMarkers();
    if (options.mergeMode && groups.has(Group::mergePageBreak)) {
        const bool headers = groups.has(Group::header) || groups.has(Group::footer);
        attempt([&] { Module1::ApplyMergePageBreaks(text, options, headers, part.pages); });
    }
    if (!options.tolerant) applySectionMarkers();
    if (mayHaveLooseTables(text, options, groups, hasDocuments)) {
        attempt([&] {
            if (Module1::MarkLooseTables(text, options, guids)) groups.add(Group::tableMarker);
        });
    }
    if (options.overrunProtection) part.endsInRow = !Module1::ProtectTableRows(text, options);
    if (groups.has(Group::generator)) Module1::RemoveGeneratorSectionWords(text);
    if (groups.has(Group::background)) Module1::RemoveBackground(text, options);
    if (hasDocuments && options.tolerant) Module1::KeepSectionWords(text, options);
    if (hasDocuments) Module1::UnwrapNestedDocuments(text, options);
    if (groups.has(Group::tableMarker)) Module1::ConvertNestedTables(text, options);
    text.resize(text.find_last_not_of(u' ') + 1);
    if (groups.has(Group::generator)) {
        part.generator = Module1::RemoveDuplicateGenerators(text, std::move(part.generator));
    }
    Module1::CollapseBlankLines(text, options);
}

}  // namespace velmor
