#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Services.h"
#include "rtf/clean/BlankLines.h"
#include "rtf/clean/FinishCleaning.h"
#include "rtf/clean/JoinedCleaning.h"
#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/CodePages.h"
#include "rtf/tables/OpenRows.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {

// Cleans joined documents in parts: a few documents at a time, which are merged one after the other. A part is a text
// of its own, with a host that says what the stages need of the first document. It ends with the page break before an
// empty document, since a document is finished at the page break after it. A part begins and ends in the middle of such
// a break, at its \sect.
//
// The first part holds the first document, and so the merged tables. It is cleaned when all documents are merged; and
// once before, for what the other parts need to know. So it is a small one if there are others. Each other part may be
// cleaned on a second thread, while the documents after it are merged.
class JoinedParts {
public:
    // `facts` are those of all documents; they have no obstacle. `host` is the first document, with the marker of a
    // page break before its last brace. With two threads, both ask for GUIDs.
    JoinedParts(const CleanOptions& options, platform::Guids& guids, const JoinedFacts& facts, char16_t mark,
                std::u16string host, SpooledTexts cleaned, const JoinLimits& limits)
        : options_(options),
          guids_(guids),
          facts_(facts),
          mark_(mark),
          cleaned_(cleaned),
          limits_(limits),
          enough_(facts.size > limits.part ? (limits.part + 15) / 16 : limits.part),
          merge_(DocumentMerge::begin(options, facts.lifted)) {
        TableCollection tables(mark_);
        tables.hostGroups() = groupsOfSingleDocument(host, options_.tolerant).value();
        part_.groups = tables.hostGroups();
        merge_->mergeHost(host, tables);
        bracketTables(host);
        const std::size_t end = host.rfind(mergeMarker);
        tail_ = host.substr(end + mergeMarker.size());
        host.resize(end);
        head_ = std::move(host);
        const std::u16string head = withTables(head_);
        page_ = codePageOfDocument(head, hostHeaderStart(head, findHostDocument(head)));
        font_ = lastDefaultFont(head);
    }

    // Each further document. False when cleaning in parts is not possible.
    bool add(std::u16string document) {
        const bool mayEnd = options_.tolerant ||
                            findText(document, u"\\sect", 0, Comparison::binary) == document.npos ||
                            !Module1::continuesSection(document);
        if (mayEnd && part_.documents.size() >= enough_ && !endPart()) return false;
        const bool isForeign = options_.tolerant && codePageOfDocument(document, hostHeaderStart(document, 0)) != page_;
        const GroupSet groups = groupsOfSingleDocument(document, options_.tolerant).value();
        TableCollection::Document lifted{std::move(document), groups};
        merge_->mergeLifted(lifted);
        if (isForeign && namesLaterFont(lifted.text)) return false;
        bracketTables(lifted.text);
        part_.groups.add(groups);
        part_.documents.append(mergeMarker).append(lifted.text);
        return part_.documents.size() <= limits_.atOnce && !isAmbiguous_;
    }

    // After the last document. False, and nothing was written, when cleaning in parts is not possible.
    bool finish(const std::function<void(std::u16string_view)>& write) {
        const bool isOnlyPart = !first_;
        if (isOnlyPart) {
            first_ = std::move(part_);
        } else if (!beginCleaning(tail_) || !endCleaning()) {
            return false;
        }
        std::u16string text;
        PartOfText state = beginning();
        if (!cleanFirstPart(isOnlyPart ? std::u16string_view(tail_) : emptyDocument, text, state)) return false;
        if (!isOnlyPart) {
            // The other parts were cleaned before the tables were complete.
            if (!(state == afterFirst_)) return false;
            text.resize(endOf(text));
        }
        write(text);
        return cleaned_.forEach([&](std::u16string_view part) {
            write(part);
            return true;
        });
    }

private:
    static constexpr std::u16string_view mergeMarker = Module1::mergePageBreakMarker;

    // After the documents of a part that is not the last one. The width tells the break before it from others.
    static constexpr std::u16string_view emptyDocument = u"{\\*\\korvanemergepagebreak}{\\rtf1\\paperw32767}}";
    static constexpr std::u16string_view tolerantBreak = u"\\sect\\sectd\\pgwsxn32767";
    static constexpr std::u16string_view exactBreak = u"\\sect\\pgwsxn32767";

    static std::int32_t lastDefaultFont(std::u16string_view text) {
        std::int32_t font = 0;
        for (RtfReader reader(text, 0, text.size(), true); reader.nextWord();) {
            if (reader.isWord(u"\\deff")) font = numberOf(reader.word().number);
        }
        return font;
    }

    struct Part {
        std::u16string documents;  // each after its marker
        GroupSet groups;
    };

    // A marker may come after the begin of a row, and after a backslash.
    void bracketTables(std::u16string& text) {
        if (!addTableMarkers(text, guids_)) return;
        part_.groups.add(Group::tableMarker);
        isAmbiguous_ = isAmbiguous_ || leavesRowOpen(text) ||
                       (!options_.tolerant && findText(text, u"\\\\{", 0, Comparison::binary) != text.npos);
    }

    bool endPart() {
        if (first_) return beginCleaning(emptyDocument);
        first_ = std::exchange(part_, {});
        enough_ = limits_.part;
        std::u16string text;
        afterFirst_ = beginning();
        const bool isClean = cleanFirstPart(emptyDocument, text, afterFirst_);
        state_ = afterFirst_;
        state_.pages.goesOn = true;
        return isClean;
    }

    PartOfText beginning() const {
        PartOfText state;
        state.pages.facingPages = facts_.hasFacingPages;
        return state;
    }

    bool cleanFirstPart(std::u16string_view end, std::u16string& text, PartOfText& state) const {
        text = withTables(head_);
        text.append(first_->documents).append(end);
        return clean(text, 0, first_->groups, state) && (end == tail_ || endOf(text) != text.npos);
    }

    // Of the current part, when that of the part before it has ended.
    bool beginCleaning(std::u16string_view end) {
        if (!endCleaning()) return false;
        cleaning_ = std::async(limits_.twoThreads ? std::launch::async : std::launch::deferred,
                               [this, end, host = hostOfPart(), part = std::exchange(part_, {})] {
                                   return cleanNextPart(host, part, end);
                               });
        return true;
    }

    bool endCleaning() { return !cleaning_.valid() || cleaning_.get(); }

    bool cleanNextPart(const std::u16string& host, const Part& part, std::u16string_view end) {
        std::u16string text = host + part.documents;
        text += end;
        if (!clean(text, host.size(), part.groups, state_) || !text.starts_with(host)) return false;
        const std::size_t from = text.find(u"\\sect\\", host.size());
        const std::size_t to = end == emptyDocument ? endOf(text) : text.size();
        if (from == text.npos || to == text.npos || to <= from) return false;
        cleaned_.add(std::u16string_view(text).substr(from, to - from));
        return true;
    }

    // False also when rows repeat so many definitions that the limit for them may depend on the length of the whole
    // text.
    bool clean(std::u16string& text, std::size_t host, GroupSet groups, PartOfText& state) const {
        constexpr std::size_t mostGrowth = 32;
        const std::size_t most = host + mostGrowth * (text.size() - host);
        groups.add(Group::mergePageBreak);
        if (facts_.hasHeaders()) groups.add(Group::header);
        finishCleaning(text, options_, guids_, groups, true, state);
        return !state.endsInRow && text.size() <= most;
    }

    // The \sect of the break before the empty document.
    std::size_t endOf(std::u16string_view text) const noexcept {
        return text.rfind(options_.tolerant ? tolerantBreak : exactBreak);
    }

    std::u16string withTables(std::u16string text) const {
        TableCollection tables(mark_);
        merge_->store(tables);
        tables.expand(text);
        return text;
    }

    // What the stages read of the first document: its code page and fonts, for text of other code pages.
    std::u16string hostOfPart() const {
        std::u16string host = u"{\\rtf1\\ansi\\ansicpg" + decimal(page_) + u"\\deff" + decimal(font_);
        if (options_.tolerant) host += withTables(TableCollection(mark_).placeholder(SharedTable::fonts));
        Module1::CollapseBlankLines(host, options_);
        return host;
    }

    // The text shows other characters when a later document adds such a font.
    bool namesLaterFont(std::u16string_view document) const {
        for (RtfReader reader(document, 0, document.size(), true); reader.nextWord();) {
            if (reader.isWord(u"\\f") && merge_->canAddFont(numberOf(reader.word().number))) return true;
        }
        return false;
    }

    CleanOptions options_;
    platform::Guids& guids_;
    const JoinedFacts& facts_;
    char16_t mark_;
    SpooledTexts cleaned_;
    JoinLimits limits_;
    std::size_t enough_;  // units after which the current part ends

    std::unique_ptr<DocumentMerge> merge_;
    std::u16string head_;    // of the first document, with the placeholders of the merged tables
    std::u16string tail_;    // its last brace, and what follows
    std::int32_t page_ = 0;  // its code page
    std::int32_t font_ = 0;  // its default font
    std::optional<Part> first_;
    PartOfText afterFirst_;
    PartOfText state_;
    Part part_;                   // the current one
    bool isAmbiguous_ = false;    // stages disagree about the end of a row or group
    std::future<bool> cleaning_;  // of a part before the current one; the last member, as it uses others
};

}  // namespace velmor
