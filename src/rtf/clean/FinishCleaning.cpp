#include "rtf/clean/FinishCleaning.h"

#include <utility>

#include "rtf/clean/BlankLines.h"
#include "rtf/clean/RemoveBackground.h"
#include "rtf/clean/RemoveDuplicateGenerators.h"
#include "rtf/clean/RemoveGeneratorSectionWords.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/KeepSectionWords.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/pages/SectionMarkers.h"
#include "rtf/tables/LooseTables.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/RowProtection.h"
#include "text/Compare.h"

namespace velmor {
namespace {

class Finishing {
public:
    Finishing(std::u16string& text, const CleanOptions& options, platform::Guids& guids, GroupSet groups,
              bool hasDocuments, PartOfText& part)
        : text_(text), options_(options), guids_(guids), groups_(groups), hasDocuments_(hasDocuments), part_(part) {}

    void run() {
        // Section markers recognise joined documents by their merge markers.
        if (options_.tolerant) applySectionMarkers();
        applyMergePageBreaks();
        if (!options_.tolerant) applySectionMarkers();
        markLooseTables();
        if (options_.overrunProtection) part_.endsInRow = !Module1::ProtectTableRows(text_, options_);
        if (groups_.has(Group::generator)) Module1::RemoveGeneratorSectionWords(text_);
        if (groups_.has(Group::background)) Module1::RemoveBackground(text_, options_);
        if (hasDocuments_ && options_.tolerant) Module1::KeepSectionWords(text_, options_);
        if (hasDocuments_) Module1::UnwrapNestedDocuments(text_, options_);
        if (groups_.has(Group::tableMarker)) Module1::ConvertNestedTables(text_, options_);
        text_.resize(text_.find_last_not_of(u' ') + 1);
        if (groups_.has(Group::generator)) {
            part_.generator = Module1::RemoveDuplicateGenerators(text_, std::move(part_.generator));
        }
        Module1::CollapseBlankLines(text_, options_);
    }

private:
    void applyMergePageBreaks() {
        if (!options_.mergeMode || !groups_.has(Group::mergePageBreak)) return;
        const bool headers = groups_.has(Group::header) || groups_.has(Group::footer);
        attempt([&] { Module1::ApplyMergePageBreaks(text_, options_, headers, &part_.pages); });
    }

    void applySectionMarkers() {
        if (groups_.has(Group::section)) attempt([&] { Module1::ApplySectionMarkers(text_, options_); });
    }

    void markLooseTables() {
        const bool hasMarkers = groups_.has(Group::tableMarker);
        const bool mayHaveSome = hasDocuments_
                                     ? hasMarkers || options_.tolerant
                                     : hasMarkers && findText(text_, u"\\nestrow", 0, Comparison::binary) != text_.npos;
        if (!mayHaveSome) return;
        attempt([&] {
            if (Module1::MarkLooseTables(text_, options_, guids_)) groups_.add(Group::tableMarker);
        });
    }

    std::u16string& text_;
    const CleanOptions& options_;
    platform::Guids& guids_;
    GroupSet groups_;
    bool hasDocuments_;
    PartOfText& part_;
};

}  // namespace

void finishCleaning(std::u16string& text, const CleanOptions& options, platform::Guids& guids, GroupSet groups,
                    bool hasDocuments, PartOfText& part) {
    Finishing(text, options, guids, groups, hasDocuments, part).run();
}

}  // namespace velmor
