#include "rtf/pages/HeaderSections.h"

#include <algorithm>
#include <utility>

namespace velmor {
namespace {

void appendWords(std::u16string& text, const HeaderWords& words) {
    for (const HeaderKind kind : headerKinds) text += words.distance[kind];
    if (words.title) text += u"\\titlepg";
    for (const std::u16string_view side : words.frame) text += side;
    if (words.border[HeaderKind::header]) text += u"\\pgbrdrhead";
    if (words.border[HeaderKind::footer]) text += u"\\pgbrdrfoot";
}

}  // namespace

void HeaderSections::Start::want(HeaderKind kind) {
    kinds[kind] = {};
    kinds[kind].wanted = kinds[kind].searching = true;
}

bool HeaderSections::Start::takesGroups() const noexcept {
    return std::any_of(kinds.values.begin(), kinds.values.end(),
                       [](const NewGroups& groups) { return groups.byHost || groups.source != 0; });
}

std::size_t HeaderSections::change(std::uint32_t text, std::size_t begin, std::size_t end, bool cuts) {
    changes_.push_back({text, begin, end, {}, cuts});
    return changes_.size() - 1;
}

// ---- Documents

HeaderWords& HeaderSections::wordsOf(const FlowPlace& place) {
    return place.text == FlowPlace::host ? section_.words : documents_.back().words;
}

void HeaderSections::enterDocument(std::uint32_t text) {
    documents_.push_back({text, {}, braced_ && section_.hasContent});
    Start* const start = target();
    if (start == nullptr) return;
    for (const HeaderKind kind : headerKinds) {
        if (start->kinds[kind].awaited == 0) start->kinds[kind].awaited = text;
    }
}

void HeaderSections::leaveDocument() {
    const std::uint32_t left = documents_.back().text;
    documents_.pop_back();
    Start* const start = target();
    if (start == nullptr) return;
    for (const HeaderKind kind : headerKinds) {
        NewGroups& groups = start->kinds[kind];
        const bool searched = groups.source != 0 ? groups.source == left : groups.awaited == left;
        if (searched) groups.searching = false;
    }
}

// ---- Groups, whose end restores the section

void HeaderSections::leaveBraces(const FlowPlace& place) {
    for (; !saved_.empty() && saved_.back().depth > place.depth; saved_.pop_back()) {
        section_.words = saved_.back().words;
        section_.said = saved_.back().said;
    }
    if (lastPage_) lastPage_->holding.leave(place);
    if (section_.start) section_.holding.leave(place);
}

// The words in force are about to change, in a group of this depth.
void HeaderSections::save(std::size_t depth) {
    if (braced_ && (saved_.empty() || saved_.back().depth < depth))
        saved_.push_back({depth, section_.words, section_.said});
}

// The new start precedes the host's later words.
void HeaderSections::forgetSaid() {
    section_.said = {};
    for (Saved& saved : saved_) saved.said = {};
}

// Groups within that of the section's start do not restore the words before the start.
void HeaderSections::holdInGroups(const HeaderWords& carried) {
    const std::size_t depth = section_.holding.place.depth;
    auto inner = saved_.end();
    while (inner != saved_.begin() && (inner - 1)->depth > depth) --inner;
    if (inner == saved_.begin() || (inner - 1)->depth < depth) {
        const HeaderWords before = inner == saved_.end() ? section_.words : inner->words;
        inner = saved_.insert(inner, {depth, before, {}}) + 1;
    }
    for (; inner != saved_.end(); ++inner) add(carried, inner->said, inner->words);
}

// ---- Where sections begin

bool HeaderSections::justBegan() const noexcept {
    return section_.start && section_.start->breaks && !section_.hasContent && !section_.hasPage;
}

void HeaderSections::marker(HeaderKind kind, const FlowPlace& place) {
    const std::size_t taken = cut(place);
    if (!place.body) return;
    if (pending_) return pending_->want(kind);
    if (section_.start && !section_.hasContent) return section_.start->want(kind);
    Start start;
    start.want(kind);
    if (!section_.hasContent) {
        start.change = taken;
        section_.start = start;
        section_.holding = {place};
        forgetSaid();
    } else if (place.inTable) {
        pending_ = start;
    } else if (lastPage_) {
        start.asPage = lastPage_->described;
        start.forBreak = true;
        const Holding holding = lastPage_->holding;
        const std::size_t page = cut(lastPage_->place);
        closeSectionAt(*lastPage_);
        begin(start, page, holding);
    } else {
        closeSection();
        begin(start, taken, {place});
    }
}

void HeaderSections::begin(Start start, std::size_t change, const Holding& holding) {
    start.change = change;
    start.breaks = true;
    Section next;
    next.start = start;
    next.holding = holding;
    beginSection(std::move(next));
}

// The previous section is closed.
void HeaderSections::beginSection(Section next) {
    next.words = section_.words;
    section_ = std::move(next);
    lastPage_.reset();
    forgetSaid();
    for (Document& document : documents_) document.continues = false;
}

void HeaderSections::placePending(const FlowPlace& place) {
    if (!pending_ || place.inTable || !place.body) return;
    const Start start = *pending_;
    pending_.reset();
    closeSection();  // its text here precedes the new one
    begin(start, change(place.text, place.begin, place.begin), {place});
}

void HeaderSections::content(const FlowPlace& place) {
    placePending(place);
    section_.hasContent = true;
    lastPage_.reset();
}

void HeaderSections::paragraphEnd(const FlowPlace& place) {
    placePending(place);
}

void HeaderSections::hostEnd(const FlowPlace& place) {
    placePending(place);
}

// A break directly after the section's own would leave an empty page.
void HeaderSections::pageBreak(const FlowPlace& place) {
    placePending(place);
    if (justBegan()) {
        cut(place);
        section_.start->forBreak = true;
        return;
    }
    section_.hasContent = section_.hasPage = true;
    if (!place.inTable) lastPage_ = PageBreak{place, false, {place}, section_.holding, section_.words};
}

void HeaderSections::sectionBreak(const FlowPlace& place) {
    placePending(place);
    if (justBegan()) {
        cut(place);
        section_.start->forBreak = true;
        return;
    }
    closeSection();
    Section next;
    next.byDocument = place.text != FlowPlace::host;
    beginSection(std::move(next));
}

void HeaderSections::description() {
    if (lastPage_) {
        lastPage_->described = true;
    } else if (section_.start && section_.start->breaks && !section_.hasPage) {
        section_.start->asPage = true;
    }
}

// ---- Words

template <typename Set>
void HeaderSections::tellTakers(const FlowPlace& place, Set set) {
    Start* const start = target();
    if (start == nullptr || !place.body) return;
    for (const HeaderKind kind : headerKinds) {
        NewGroups& groups = start->kinds[kind];
        if (groups.searching && groups.source == place.text) set(groups.words);
    }
}

template <typename Set>
void HeaderSections::setWord(const FlowPlace& place, Set set) {
    if (place.body && place.text == FlowPlace::host) save(place.depth);
    if (place.body) set(wordsOf(place));
    if (place.text != FlowPlace::host) {
        cut(place);
        tellTakers(place, set);
    } else if (place.body) {
        set(section_.said);
        lastPage_.reset();
    }
}

void HeaderSections::sectionDefaults(const FlowPlace& place) {
    const bool host = place.text == FlowPlace::host;
    lastPage_.reset();
    if (host) save(place.depth);
    wordsOf(place) = {};
    if (host) section_.said = {};
    if (!host) tellTakers(place, [](HeaderWords& words) { words = {}; });
    if (!host && (section_.start || documents_.back().continues)) {
        cut(place);  // the section keeps its page, margins and columns
        return;
    }
    if (!host && section_.byDocument) {
        save(place.depth);
        section_.words.title = false;
    }
    if (host && !section_.start) return;
    const std::size_t behind = place.begin + std::u16string_view(u"\\sectd").size();
    const std::size_t at = change(place.text, std::min(behind, place.end), place.end, false);
    if (host) {
        section_.defaults.push_back(at);
    } else {
        appendWords(changes_[at].put, section_.words);
    }
}

void HeaderSections::distance(HeaderKind kind, std::u16string_view word, const FlowPlace& place) {
    setWord(place, [&](HeaderWords& words) { words.distance[kind] = word; });
}

void HeaderSections::border(HeaderKind kind, const FlowPlace& place) {
    setWord(place, [&](HeaderWords& words) { words.border[kind] = true; });
}

void HeaderSections::frame(std::size_t index, std::u16string_view word, const FlowPlace& place) {
    setWord(place, [&](HeaderWords& words) { words.frame[index] = word; });
}

void HeaderSections::titlePage(const FlowPlace& place) {
    setWord(place, [](HeaderWords& words) { words.title = true; });
}

void HeaderSections::sectionWord(const FlowPlace& place) {
    if (place.body && awaitsSectionWords()) cut(place);
}

void HeaderSections::facingPages(const FlowPlace& place) {
    if (place.text == FlowPlace::host) {
        facing_ = true;
    } else {
        cut(place);
    }
}

// ---- Groups

void HeaderSections::group(HeaderName name, std::u16string_view text, const FlowPlace& place) {
    if (place.text == FlowPlace::host) {
        if (place.body) keepHostGroup(name, text, place);
    } else {
        cut(place);
        if (place.body) take(name, text);
    }
}

void HeaderSections::keepHostGroup(HeaderName name, std::u16string_view text, const FlowPlace& place) {
    FlowPlace before = place;
    before.end = before.begin;
    placePending(before);
    lastPage_.reset();
    if (name.pages != HeaderPages::left) current_[name.kind].firstIsMain = false;
    const HeaderPages pages = std::max(name.pages, HeaderPages::right);  // the right ones are all, or all but left ones
    std::u16string_view& given = section_.given[name.kind][static_cast<std::size_t>(pages)];
    if (given.empty()) given = text;
    section_.hostGroups[name.kind].push_back({place.begin, place.end});
    if (!section_.start || !section_.start->kinds[name.kind].wanted) return;
    section_.start->kinds[name.kind].byHost = true;
    section_.start->kinds[name.kind].searching = false;
}

void HeaderSections::take(HeaderName name, std::u16string_view text) {
    Start* const start = target();
    if (start == nullptr) return;
    NewGroups& groups = start->kinds[name.kind];
    const Document& document = documents_.back();
    if (!groups.searching) return;
    if (groups.source == 0) {
        groups.source = document.text;
        groups.words = document.words;
    }
    std::u16string_view& group = groups.groups[static_cast<std::size_t>(name.pages)];
    if (groups.source == document.text && group.empty()) group = text;
}

// ---- Writing

HeaderWords HeaderSections::closeSection(bool left) {
    for (const HeaderKind kind : headerKinds) {
        const std::u16string_view main = mainOf(section_.given[kind]);
        if (!main.empty()) current_[kind].main = main;
    }
    const HeaderWords carried = section_.start ? writeStart(*section_.start, left) : HeaderWords();
    for (const std::size_t behind : section_.defaults) appendWords(changes_[behind].put, section_.words);
    return carried;
}

// Applies the words of a new header to a section.
void HeaderSections::add(const HeaderWords& carried, const HeaderWords& said, HeaderWords& words) {
    for (const HeaderKind kind : headerKinds) {
        const bool brings = !carried.distance[kind].empty() && said.distance[kind].empty();
        if (brings) words.distance[kind] = carried.distance[kind];
        words.border[kind] = words.border[kind] || carried.border[kind];
    }
    for (std::size_t i = 0; i < frameWords.size(); ++i) {
        if (!carried.frame[i].empty() && said.frame[i].empty()) words.frame[i] = carried.frame[i];
    }
    words.title = words.title || carried.title;
}

// The section ends at a page break; groups around it may have ended since.
void HeaderSections::closeSectionAt(const PageBreak& page) {
    const bool left = section_.holding.place.depth < page.sectionHolding.place.depth;
    section_.holding = page.sectionHolding;
    const HeaderWords words = std::exchange(section_.words, page.words);
    const HeaderWords carried = closeSection(left);
    section_.words = words;
    if (!left) add(carried, section_.said, section_.words);
}

// The section's words in the documents of the taken groups become the section's words.
HeaderWords HeaderSections::carry(const Start& start, bool left) {
    HeaderWords carried;
    for (const HeaderKind kind : headerKinds) {
        const NewGroups& groups = start.kinds[kind];
        if (!groups.taken()) continue;
        carried.distance[kind] = groups.words.distance[kind];
        carried.border[kind] = groups.words.border[kind];
        HeaderWords shared;
        shared.frame = groups.words.frame;
        shared.title = groups.words.title;
        add(shared, {}, carried);
    }
    if (braced_ && !left) holdInGroups(carried);
    add(carried, section_.said, section_.words);
    return carried;
}

HeaderWords HeaderSections::writeStart(const Start& start, bool left) {
    const bool hadTitle = section_.words.title;
    std::u16string words = start.breaks ? u"\\sbkpage\\pgncont" : u"";
    const HeaderWords carried = carry(start, left);
    appendWords(words, carried);
    const bool title = section_.words.title;
    std::u16string groups;
    for (const HeaderKind kind : headerKinds) {
        const NewGroups& newGroups = start.kinds[kind];
        if (newGroups.taken() || (start.breaks && newGroups.wanted && !newGroups.byHost)) {
            appendNew(groups, kind, newGroups, title);
        } else if (title && (start.breaks || !hadTitle)) {
            appendFirstOfOther(groups, kind);
        }
    }
    const Holding& holding = section_.holding;
    if (holding.moved && !words.empty()) {
        const std::size_t moved = change(holding.place.text, holding.place.begin, holding.place.begin);
        changes_[moved].put = std::exchange(words, {});
    }
    // Words directly after a generator group would be removed with it.
    const std::u16string_view opening = !start.breaks ? u"" : start.asPage ? u"\\page" : u"\\sect";
    std::u16string& put = changes_[start.change].put;
    put = opening;
    put += start.breaks ? words + groups : groups + words;
    return carried;
}

// Every page shows the new ones: a section inherits the groups that it does not give.
void HeaderSections::appendNew(std::u16string& text, HeaderKind kind, const NewGroups& groups, bool title) {
    const auto given = [&](HeaderPages pages) { return groups.groups[static_cast<std::size_t>(pages)]; };
    const std::u16string_view main = mainOf(groups.groups);
    if (main.empty()) appendGroup(text, {kind, HeaderPages::all}, {});
    for (const HeaderPages pages : {HeaderPages::all, HeaderPages::right, HeaderPages::left}) {
        if (!given(pages).empty()) text += given(pages);
    }
    if (facing_ && given(HeaderPages::left).empty()) appendGroup(text, {kind, HeaderPages::left}, main);
    const bool ownFirst = groups.words.title || !title;
    const std::u16string_view first = ownFirst ? given(HeaderPages::first) : main;
    if (title || !first.empty()) appendGroup(text, {kind, HeaderPages::first}, first);
    current_[kind] = {main, title && !ownFirst};

    for (const auto& [begin, end] : section_.hostGroups[kind]) change(FlowPlace::host, begin, end);
}

// The first page of the new section, and of later ones, shows the ordinary group of the other kind.
void HeaderSections::appendFirstOfOther(std::u16string& text, HeaderKind kind) {
    const bool own = !section_.given[kind][static_cast<std::size_t>(HeaderPages::first)].empty();
    if (own || current_[kind].firstIsMain) return;
    appendGroup(text, {kind, HeaderPages::first}, current_[kind].main);
    current_[kind].firstIsMain = true;
}

std::vector<HeaderSections::Change> HeaderSections::finish() {
    // A page without text and without a new header is removed.
    const auto& start = section_.start;
    if (start && start->breaks && !start->forBreak && !section_.hasContent && !start->takesGroups()) {
        section_.start.reset();
    }
    closeSection();
    return std::move(changes_);
}

}  // namespace velmor
