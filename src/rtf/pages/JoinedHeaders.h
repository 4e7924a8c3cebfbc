#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HeaderWords.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// Separates the headers and footers of joined documents: a page shows what it would show if its document were
// alone. A section inherits the groups that it does not give, by kind of page, so a document gets empty groups
// for kinds that only previous documents give. \facingp holds for the whole text: if one document has it, those
// without it show their ordinary header on left pages too.
//
// One pass over the text, no recursion. The text between documents must reset the words of sections (\titlepg,
// \headery, ...).
class JoinedHeaders {
public:
    // A part of the text that begins with a section: the host, or what follows a marker.
    struct Join {
        std::size_t begin;  // of the marker
        std::size_t after;
        bool document;  // it is one; otherwise headers and footers continue
        bool facing;    // it has \facingp
    };

    // `joins` are in ascending order, the host first. The changes go to `edits`. `tolerant`: \sectd begins each joined
    // document, so that its words hold in it only.
    JoinedHeaders(std::u16string_view text, const std::vector<Join>& joins, bool tolerant, JoinedPart& part,
                  TextEdits& edits)
        : text_(text),
          joins_(joins),
          tolerant_(tolerant),
          anyFacing_(part.facingPages),
          part_(part),
          shown_(part.shown),
          emptied_(part.emptied),
          edits_(edits) {
        const std::size_t host = findHostDocument(text);
        if (host == noDocument) return;
        for (const Join& join : joins) {
            if (join.document) facing_.push_back(false);
            if (join.facing) facing_.back() = anyFacing_ = true;
        }
        if (anyFacing_ && !part.goesOn) letHostFace(host);
        read(host);
    }

private:
    using Source = HeaderSource;

    struct OpenGroup {
        std::optional<HeaderName> name;  // absent in an ignorable destination
        std::size_t begin;
        std::size_t depth;
    };

    // Readers search the word in the header of the whole text.
    void letHostFace(std::size_t host) {
        const std::size_t header = hostHeaderStart(text_, host), at = skipBlank(text_, header);
        for (DocumentHeader words(text_, header); words.next();) {
            if (words.word().letters == u"facingp") return;
        }
        edits_.replaceApartVal(at, at, u"\\facingp");
    }

    // ---- Reading

    void read(std::size_t host) {
        auto next = joins_.begin() + 1;
        const auto joinUpTo = [&](std::size_t index) {
            for (; next != joins_.end() && next->after <= index; ++next) join(*next);
        };
        RtfReader reader(text_, host, text_.size(), true);
        while (reader.next()) {
            const std::size_t index = reader.position();
            joinUpTo(index);
            if (reader.opens()) {
                openGroup(index, reader.depth());
            } else if (reader.closes()) {
                closeGroup(index, reader.depth());
            } else if (!open_) {
                takeWord(reader.word());
            }
        }
        joinUpTo(text_.size());
        closeSection(lastBrace_);
    }

    void openGroup(std::size_t index, std::size_t depth) {
        if (open_ || !standsAt(text_, index + 1, u"\\")) return;
        const auto name = headerNamed(readWord(text_, index + 1).letters);
        if (name || standsAt(text_, index + 1, u"\\*")) open_ = OpenGroup{name, index, depth};
    }

    void closeGroup(std::size_t index, std::size_t depth) {
        if (open_ && open_->depth == depth + 1) {
            if (open_->name) take(*open_->name, open_->begin, index + 1);
            open_.reset();
        }
        lastBrace_ = index;
    }

    void takeWord(const ControlWord& word) {
        if (word.letters == u"sect") {
            closeSection(word.begin);
        } else if (word.letters == u"titlepg") {
            title_ = endWithBlank(text_, word);
        }
    }

    void take(HeaderName name, std::size_t begin, std::size_t end) {
        // This document has no left pages of its own, but another document has.
        if (anyFacing_ && !facing_[document_]) {
            if (name.pages == HeaderPages::left) return edits_.cut(begin, end);
            const HeaderName left{name.kind, HeaderPages::left};
            if (name.pages != HeaderPages::first && source({name.kind, HeaderPages::all}) != Source::thisSection) {
                edits_.replaceApartVal(end, end, groupFor(left, text_.substr(begin, end - begin)));
                source(left) = Source::thisSection;
            }
        }
        source(name) = Source::thisSection;
    }

    // ---- Sections

    void join(const Join& join) {
        if (join.document) ++document_;
        if (open_) return;
        closeSection(join.begin);
        part_.shown = shown_;
        part_.emptied = emptied_;
        if (!join.document) return;
        beginning_ = join.after;
        for (HeaderSources& shown : shown_.values) {
            std::replace(shown.begin(), shown.end(), Source::thisDocument, Source::previousDocument);
        }
    }

    // `end`: the place for its last words.
    void closeSection(std::size_t end) {
        for (const HeaderKind kind : headerKinds) closeSection(kind);
        beginning_ = title_ = nowhere;
        if (tolerant_) endSilently(end);
    }

    void closeSection(HeaderKind kind) {
        const bool begins = beginning_ != nowhere;
        for (const HeaderPages pages : {HeaderPages::all, HeaderPages::left, HeaderPages::first}) {
            Source& giver = source({kind, pages});
            // A first page does not show before a section has one of its own.
            const bool shows = pages == HeaderPages::first ? title_ != nowhere : begins;
            if (giver != Source::previousDocument || !shows) continue;
            giver = Source::nobody;
            emptied_[kind] = emptied_[kind] || pages == HeaderPages::all;
            const std::size_t place = begins ? beginning_ : title_;
            if (pages != HeaderPages::left || anyFacing_)
                edits_.replaceApartVal(place, place, groupFor({kind, pages}, {}));
        }
        for (Source& giver : shown_[kind]) {
            if (giver == Source::thisSection) giver = Source::thisDocument;
            if (giver == Source::thisDocument) emptied_[kind] = false;
        }
    }

    // Empty headers at the page's edge do not move the text, whatever the document's distance is. The distance must
    // not hold in a later section, which may have a header.
    void endSilently(std::size_t end) {
        std::u16string words;
        if (emptied_[HeaderKind::header]) words += u"\\headery0";
        if (emptied_[HeaderKind::footer]) words += u"\\footery0";
        if (words.empty()) return;
        if (!wordStandsAt(text_, end, u"\\sect")) return edits_.replaceApartVal(end, end, std::move(words));
        edits_.replaceApartVal(end, endWithBlank(text_, readWord(text_, end)), u"{" + words + u"\\sect}");
    }

    Source& source(HeaderName name) noexcept {
        return shown_[name.kind][static_cast<std::size_t>(ordinary(name.pages))];
    }

    std::u16string_view text_;
    const std::vector<Join>& joins_;
    bool tolerant_;
    std::vector<bool> facing_;  // by document: left pages have their own
    bool anyFacing_ = false;

    std::size_t document_ = 0;
    std::optional<OpenGroup> open_;
    JoinedPart& part_;
    PerKind<HeaderSources> shown_;
    PerKind<bool> emptied_;
    std::size_t lastBrace_ = 0;
    std::size_t beginning_ = nowhere;  // of the document, in its first section
    std::size_t title_ = nowhere;      // after the section's \titlepg
    TextEdits& edits_;
};

}  // namespace velmor
