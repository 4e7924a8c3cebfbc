#include "rtf/pages/JoinedHeaders.h"

#include <iterator>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view facingWord = u"\\facingp";

std::size_t findFacing(std::u16string_view text, std::size_t from) noexcept {
    RtfSearch search(text);
    while ((from = search.find(facingWord, from)) != text.npos && !wordStandsAt(text, from, facingWord)) ++from;
    return from;
}

bool beginsBody(std::u16string_view letters) {
    const WordMeaning meaning = meaningOf(letters);
    return meaning.is(WordTrait::beginsText) || meaning.is(WordTrait::endsParagraph) || meaning.is(WordTrait::shown) ||
           meaning.is(WordTrait::shownCell);
}

// What may stand in a host's header.
bool isTable(std::u16string_view text, std::size_t index) {
    return standsAt(text, index, u"{\\*") ||
           (standsAt(text, index, u"{\\") && wordIs(WordTrait::hostTable, readWord(text, index + 1).letters));
}

}  // namespace

JoinedHeaders::JoinedHeaders(std::u16string_view text, const std::vector<Join>& joins, bool tolerant, TextEdits& edits)
    : text_(text), joins_(joins), tolerant_(tolerant), edits_(edits) {
    const std::size_t host = findHostDocument(text);
    if (host == noDocument) return;
    findFacingPages();
    if (anyFacing_) letHostFace(host);
    read(host);
}

void JoinedHeaders::findFacingPages() {
    facing_.push_back(false);
    auto next = joins_.begin();
    for (std::size_t at = 0; next != joins_.end() || at != nowhere;) {
        const std::size_t found = at == nowhere ? nowhere : findFacing(text_, at);
        for (; next != joins_.end() && next->behind <= found; ++next) {
            if (next->document) facing_.push_back(false);
        }
        at = found;
        if (found == nowhere) continue;
        facing_.back() = anyFacing_ = true;
        ++at;
    }
}

// Readers search the word in the header of the whole text.
void JoinedHeaders::letHostFace(std::size_t host) {
    std::size_t at = hostHeaderStart(text_, host);
    for (std::size_t next = at; (next = skipWhiteSpace(text_, next)) < text_.size();) {
        if (isTable(text_, next)) {
            const std::size_t end = findGroupEnd(text_, next + 1, true);
            if (end == noGroupEnd) break;
            at = next = end + 1;
        } else {
            const ControlWord word = readWord(text_, next);
            if (text_[next] != u'\\' || word.letters.empty() || beginsBody(word.letters)) break;
            if (word.letters == facingWord.substr(1)) return;
            at = next = endWithBlank(text_, word);
        }
    }
    edits_.replaceApartVal(at, at, std::u16string(facingWord));
}

// ---- Reading

void JoinedHeaders::read(std::size_t host) {
    auto next = joins_.begin();
    const auto joinUpTo = [&](std::size_t index) {
        for (; next != joins_.end() && next->behind <= index; ++next) join(*next);
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
            takeWord(index);
        }
    }
    joinUpTo(text_.size());
    closeSection(lastBrace_);
}

void JoinedHeaders::openGroup(std::size_t index, std::size_t depth) {
    if (open_ || !standsAt(text_, index + 1, u"\\")) return;
    const auto name = headerNamed(readWord(text_, index + 1).letters);
    if (name || standsAt(text_, index + 1, u"\\*")) open_ = OpenGroup{name, index, depth};
}

void JoinedHeaders::closeGroup(std::size_t index, std::size_t depth) {
    if (open_ && open_->depth == depth + 1) {
        if (open_->name) take(*open_->name, open_->begin, index + 1);
        open_.reset();
    }
    lastBrace_ = index;
}

void JoinedHeaders::takeWord(std::size_t index) {
    if (wordStandsAt(text_, index, u"\\sect")) {
        closeSection(index);
    } else if (wordStandsAt(text_, index, u"\\titlepg")) {
        title_ = endWithBlank(text_, readWord(text_, index));
    }
}

void JoinedHeaders::take(HeaderName name, std::size_t begin, std::size_t end) {
    // This document has no left pages of its own, but another document has.
    const bool leftAsMain = anyFacing_ && !facing_[document_];
    Pages& given = given_[name.kind];
    if (name.pages == HeaderPages::first) {
        given.first = true;
    } else if (name.pages != HeaderPages::left) {
        if (leftAsMain && !given.main) {
            std::u16string copy;
            appendGroup(copy, {name.kind, HeaderPages::left}, text_.substr(begin, end - begin));
            edits_.replaceApartVal(end, end, std::move(copy));
            given.left = true;
        }
        given.main = true;
    } else if (leftAsMain) {
        edits_.replaceApartVal(begin, end, {});
    } else {
        given.left = true;
    }
}

// ---- Sections

void JoinedHeaders::join(const Join& join) {
    if (join.document) ++document_;
    if (open_) return;
    closeSection(join.begin);
    if (!join.document) return;
    beginning_ = join.behind;
    for (const HeaderKind kind : headerKinds) {
        Pages& foreign = foreign_[kind];
        const Pages& own = own_[kind];
        foreign = {foreign.main || own.main, foreign.left || own.left, foreign.first || own.first};
        own_[kind] = {};
        emptied_[kind] = false;
    }
}

void JoinedHeaders::closeSection(std::size_t end) {
    for (const HeaderKind kind : headerKinds) closeSection(kind);
    beginning_ = title_ = nowhere;
    if (tolerant_) endSilently(end);
}

void JoinedHeaders::closeSection(HeaderKind kind) {
    const Pages given = std::exchange(given_[kind], {});
    Pages& own = own_[kind];
    Pages& foreign = foreign_[kind];
    own = {own.main || given.main, own.left || given.left, own.first || given.first};
    foreign = {foreign.main && !given.main, foreign.left && !given.left, foreign.first && !given.first};
    if (beginning_ != nowhere) {
        if (foreign.main) empty(beginning_, {kind, HeaderPages::all});
        emptied_[kind] = foreign.main;
        if (foreign.left && anyFacing_) empty(beginning_, {kind, HeaderPages::left});
        foreign.main = foreign.left = false;
    }
    // It does not show before a section has its own first page.
    if (foreign.first && title_ != nowhere) {
        empty(beginning_ != nowhere ? beginning_ : title_, {kind, HeaderPages::first});
        foreign.first = false;
    }
    emptied_[kind] = emptied_[kind] && !own.any();
}

// Empty headers at the page's edge do not move the text, whatever the document's distance is. The distance must
// not hold in a later section, which may have a header.
void JoinedHeaders::endSilently(std::size_t end) {
    std::u16string words;
    if (emptied_[HeaderKind::header]) words += u"\\headery0";
    if (emptied_[HeaderKind::footer]) words += u"\\footery0";
    if (words.empty()) return;
    if (!wordStandsAt(text_, end, u"\\sect")) return edits_.replaceApartVal(end, end, std::move(words));
    edits_.replaceApartVal(end, endWithBlank(text_, readWord(text_, end)), u"{" + words + u"\\sect}");
}

void JoinedHeaders::empty(std::size_t place, HeaderName name) {
    std::u16string text;
    appendGroup(text, name, {});
    edits_.replaceApartVal(place, place, std::move(text));
}

}  // namespace velmor
