#include "rtf/clean/CleanRTF.h"

#include <exception>
#include <utility>

#include "rtf/clean/BlankLines.h"
#include "rtf/clean/RemoveBackground.h"
#include "rtf/clean/RemoveDuplicateGenerators.h"
#include "rtf/clean/RemoveGeneratorSectionWords.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/PlaceholderMark.h"
#include "rtf/edit/TableCollection.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/HeadersFooters.h"
#include "rtf/pages/KeepSectionWords.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/pages/SectionMarkers.h"
#include "rtf/read/Module1.h"
#include "rtf/tables/LooseTables.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/RowProtection.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Escape.h"

namespace velmor {
namespace {

template <typename Step>
bool attempt(Step step) noexcept {
    try {
        step();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool isOverrunProtectionOn(const platform::Registry& registry) {
    const auto value = registry.value(u"SOFTWARE\\Korvane\\Quillmark\\Options", u"RTF Table Overrun Protection");
    return !value || *value == u"1";
}

bool holdsDocument(std::u16string_view text) noexcept {
    for (std::size_t at = 0;; ++at) {
        at = findText(text, u"\\rtf1", at, Comparison::binary);
        if (at == text.npos) return false;
        if (!isEscaped(text, at)) return true;
    }
}

// One run of the stages over one text.
class Run {
public:
    Run(std::u16string& text, const CleanOptions& options, platform::Guids& guids)
        : text_(text), options_(options), guids_(guids) {}

    void clean() {
        const auto mark = unusedMark(text_);
        if (!mark) return;
        TableCollection tables(*mark);
        const bool merged = attempt([&] { merge(tables); });
        if (merged) attempt([&] { bracketTables(tables); });
        // Whatever failed: what was set aside returns.
        if (!attempt([&] { tables.expand(text_); }) || !merged) return;
        attempt([&] { finish(); });
    }

private:
    void merge(TableCollection& tables) {
        hasDocuments_ = Module1::ExtractEmbeddedDocuments(text_, tables, options_);
        Module1::MergeDocumentTables(text_, tables, options_);
        if (!options_.mergeMode) Module1::ApplyHeadersFooters(text_, tables, options_);
        groups_ = tables.hostGroups();
        for (const TableCollection::Document& document : tables.documents()) groups_.add(document.groups);
    }

    // The tables of each text, while the tables inside them are in documents of their own.
    void bracketTables(TableCollection& tables) {
        if (addTableMarkers(text_, guids_)) groups_.add(Group::tableMarker);
        for (TableCollection::Document& document : tables.documents()) {
            if (addTableMarkers(document.text, guids_)) groups_.add(Group::tableMarker);
        }
    }

    void finish() {
        // Section markers know joined documents by their merge markers.
        if (options_.tolerant) applySectionMarkers();
        if (options_.mergeMode && groups_.has(Group::mergePageBreak)) {
            const bool headers = groups_.has(Group::header) || groups_.has(Group::footer);
            attempt([&] { Module1::ApplyMergePageBreaks(text_, options_, headers); });
        }
        if (!options_.tolerant) applySectionMarkers();
        bool hasMarkers = groups_.has(Group::tableMarker);
        if (mayHaveLooseTables(hasMarkers)) {
            attempt([&] { hasMarkers |= Module1::MarkLooseTables(text_, options_, guids_); });
        }
        if (options_.overrunProtection) Module1::ProtectTableRows(text_, options_);
        if (groups_.has(Group::generator)) Module1::RemoveGeneratorSectionWords(text_);
        if (groups_.has(Group::background)) Module1::RemoveBackground(text_, options_);
        if (hasDocuments_ && options_.tolerant) Module1::KeepSectionWords(text_, options_);
        if (hasDocuments_) Module1::UnwrapNestedDocuments(text_, options_);
        if (hasMarkers) Module1::ConvertNestedTables(text_, options_);
        trimTrailingSpace();
        if (groups_.has(Group::generator)) Module1::RemoveDuplicateGenerators(text_);
        Module1::CollapseBlankLines(text_, options_);
    }

    void applySectionMarkers() {
        if (!groups_.has(Group::section)) return;
        attempt([&] { Module1::ApplySectionMarkers(text_, options_); });
    }

    bool mayHaveLooseTables(bool hasMarkers) const {
        if (hasDocuments_) return hasMarkers || options_.tolerant;
        return hasMarkers && findText(text_, u"\\nestrow", 0, Comparison::binary) != text_.npos;
    }

    void trimTrailingSpace() { text_.resize(text_.find_last_not_of(u' ') + 1); }

    std::u16string& text_;
    CleanOptions options_;
    platform::Guids& guids_;
    bool hasDocuments_ = false;
    GroupSet groups_;
};

}  // namespace

bool Module1::isCleanable(std::u16string_view psText) noexcept {
    return holdsDocument(psText) && findText(psText, u"<KV:", 0, Comparison::text) == psText.npos;
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
