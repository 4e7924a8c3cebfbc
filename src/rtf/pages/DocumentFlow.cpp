#include "rtf/pages/DocumentFlow.h"

#include <algorithm>
#include <array>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"

namespace velmor {
namespace {

constexpr std::u16string_view markers[] = {u"{\\*\\korvanenewheader", u"{\\*\\korvanenewfooter"};
constexpr std::u16string_view description = u"{\\*\\korvanesection";

constexpr int longestLine = 12;

// The words that matter everywhere.
const WordSet wordsAnywhere({WordTrait::section}, {Word::bin, Word::facingp, Word::intbl, Word::page, Word::par,
                                                   Word::pard, Word::row, Word::sect, Word::trowd});

bool shows(std::u16string_view letters) noexcept {
    return wordIs(WordTrait::shown, letters) || wordIs(WordTrait::shownCell, letters);
}

}  // namespace

void DocumentFlow::run() {
    const std::size_t host = findHostDocument(host_);
    if (host == noDocument) return;
    levels_.push_back({true, false, false});
    enter(host_, host, FlowPlace::host);
    while (!readings_.empty()) {
        if (readings_.back().at < readings_.back().text.size()) {
            step();
        } else {
            leave();
        }
    }
}

void DocumentFlow::enter(std::u16string_view text, std::size_t at, std::uint32_t number) {
    const bool in = !readings_.empty() && inTable();
    readings_.push_back({text, at, number, levels_.size(), in, std::nullopt});
    levels_.push_back({levels_.back().body, false, false});
    if (number != FlowPlace::host) sections_.enterDocument(number);
}

void DocumentFlow::leave() {
    levels_.resize(readings_.back().base);
    readings_.pop_back();
    if (readings_.empty()) return;
    sections_.leaveDocument();
    sections_.leaveGroup(place(readings_.back().at, readings_.back().at));
}

void DocumentFlow::step() {
    const char16_t unit = readings_.back().text[readings_.back().at];
    if (unit == u'\\') {
        readBackslash();
    } else if (unit == u'{') {
        if (!readMarker()) openGroup();
    } else if (unit == u'}') {
        closeGroup();
    } else if (unit == tables_.mark()) {
        readPlaceholder();
    } else {
        readPlainText();
    }
}

void DocumentFlow::readPlaceholder() {
    Reading& reading = readings_.back();
    const TableCollection::Placeholder found = tables_.placeholderAt(reading.text, reading.at);
    reading.at = found.end;
    if (!found.document) return;
    enter(tables_.documents()[*found.document].text, 0, static_cast<std::uint32_t>(*found.document + 1));
}

void DocumentFlow::readPlainText() {
    Reading& reading = readings_.back();
    const char16_t mark = tables_.mark();
    const bool listens = levels_.back().body && sections_.awaitsContent();
    for (std::size_t& at = reading.at; at < reading.text.size(); ++at) {
        const char16_t unit = reading.text[at];
        if (unit == u'\\' || unit == u'{' || unit == u'}' || unit == mark) return;
        if (listens && !isWhiteSpace(unit)) {
            content(at);
            if (sections_.awaitsContent()) continue;
            ++at;
            return;
        }
    }
}

// ---- Groups

bool DocumentFlow::readMarker() {
    Reading& reading = readings_.back();
    if (!standsAt(reading.text, reading.at, u"{\\*\\korvane")) return false;
    if (standsAt(reading.text, reading.at, description) && levels_.back().body) sections_.description();
    for (const HeaderKind kind : headerKinds) {
        const std::u16string_view opening = markers[static_cast<std::size_t>(kind)];
        if (!wordStandsAt(reading.text, reading.at, opening)) continue;
        const std::size_t end = skipWhiteSpace(reading.text, reading.at + opening.size());
        if (!standsAt(reading.text, end, u"}")) return false;
        if (!levels_.back().passedOver) sections_.marker(kind, place(reading.at, end + 1));
        reading.at = end + 1;
        return true;
    }
    return false;
}

void DocumentFlow::openGroup() {
    const std::size_t index = readings_.back().at++;
    levels_.push_back(levels_.back());
    classify(index);
}

void DocumentFlow::classify(std::size_t index) {
    Reading& reading = readings_.back();
    const GroupOpening opening = readOpening(reading.text, index);
    const std::u16string_view letters = opening.letters;
    if (!standsAt(reading.text, opening.word, u"\\")) return;
    const WordMeaning meaning = meaningOf(letters);
    Level& level = levels_.back();
    const auto name = headerNamed(letters);
    if (name && opening.word == index + 1 && !reading.group) {
        reading.group = OpenGroup{*name, index, levels_.size(), level.body};
        level.passedOver = reading.number != FlowPlace::host;
    } else if (meaning.is(WordTrait::shownGroup) || (letters == u"field" && showsResult(index))) {
        content(index);
    } else if (!opening.ignorable && letters != u"field" && !meaning.is(WordTrait::hiddenGroup)) {
        return;
    }
    level.body = false;
}

// For the outermost field only, as its content is not body text.
bool DocumentFlow::showsResult(std::size_t index) const {
    if (!levels_.back().body || !sections_.awaitsContent()) return false;
    const std::u16string_view text = readings_.back().text;
    return showsText(text.substr(index, findGroupEnd(text, index + 1, true) - index));
}

void DocumentFlow::closeGroup() {
    Reading& reading = readings_.back();
    const std::size_t index = reading.at++;
    if (levels_.size() < reading.base + 2) return;
    if (reading.number == FlowPlace::host && levels_.size() == reading.base + 2) {
        sections_.hostEnd(place(index, index));
    }
    if (reading.group && reading.group->level == levels_.size()) {
        const OpenGroup& group = *reading.group;
        FlowPlace whole = place(group.begin, index + 1);
        whole.body = group.body;
        sections_.group(group.name, reading.text.substr(group.begin, index + 1 - group.begin), whole);
        reading.group.reset();
    }
    levels_.pop_back();
    if (levels_.size() > readings_.front().base + 1) sections_.leaveGroup(place(reading.at, reading.at));
}

// ---- Words

void DocumentFlow::readBackslash() {
    Reading& reading = readings_.back();
    const std::size_t index = reading.at;
    if (!sections_.awaitsContent() && !sections_.awaitsSectionWords() && !wordsAnywhere.mayHold(reading.text, index)) {
        reading.at = index + 2;
        return;
    }
    const ControlWord word = readWord(reading.text, index);
    if (word.letters.empty()) {
        if (index + 1 < reading.text.size() && isShownSymbol(reading.text[index + 1])) content(index);
        reading.at = index + 2;
        return;
    }
    reading.at =
        word.letters == u"bin" ? std::max(word.end, skipEscape(reading.text, index)) : endWithBlank(reading.text, word);
    if (!levels_.back().passedOver) take(word, std::min(reading.at, reading.text.size()));
}

void DocumentFlow::take(const ControlWord& word, std::size_t behind) {
    const auto is = [&](std::u16string_view letters) { return word.letters == letters; };
    const FlowPlace at = place(word.begin, behind);
    const std::u16string_view whole = TextRange{word.begin, word.end}.of(readings_.back().text);
    if (is(u"headery")) return sections_.distance(HeaderKind::header, whole, at);
    if (is(u"footery")) return sections_.distance(HeaderKind::footer, whole, at);
    if (is(u"facingp")) return sections_.facingPages(at);
    if (is(u"pgbrdrhead")) return sections_.border(HeaderKind::header, at);
    if (is(u"pgbrdrfoot")) return sections_.border(HeaderKind::footer, at);
    if (is(u"titlepg")) return sections_.titlePage(at);
    if (word.letters.starts_with(u"pgbrdr")) return takeFrame(word);
    if (levels_.back().body) takeBodyWord(word, behind);
}

// With the words that describe its line, but without borders of a paragraph.
void DocumentFlow::takeFrame(const ControlWord& word) {
    const auto known = std::find(frameWords.begin(), frameWords.end(), word.letters);
    if (known == frameWords.end()) return;
    Reading& reading = readings_.back();
    std::size_t end = word.end;
    for (int words = 0; words < longestLine; ++words) {
        const std::size_t next = skipWhiteSpace(reading.text, end);
        if (!standsAt(reading.text, next, u"\\br")) break;
        const ControlWord line = readWord(reading.text, next);
        const bool describes = line.letters == u"brsp" || line.letters.starts_with(u"brdr");
        if (!describes || wordIs(WordTrait::edge, line.letters)) break;
        end = line.end;
    }
    reading.at = end + standsAt(reading.text, end, u" ");
    const auto index = static_cast<std::size_t>(known - frameWords.begin());
    sections_.frame(index, TextRange{word.begin, end}.of(reading.text), place(word.begin, reading.at));
}

void DocumentFlow::takeBodyWord(const ControlWord& word, std::size_t behind) {
    const auto is = [&](std::u16string_view letters) { return word.letters == letters; };
    if (is(u"par")) {
        sections_.paragraphEnd(place(word.begin, word.begin));
    } else if (is(u"pard")) {
        levels_.back().inTable = false;
    } else if (is(u"intbl")) {
        levels_.back().inTable = true;
    } else if (is(u"page")) {
        sections_.pageBreak(place(word.begin, behind));
    } else if (is(u"sect")) {
        sections_.sectionBreak(place(word.begin, behind));
    } else if (is(u"sectd")) {
        sections_.sectionDefaults(place(word.begin, behind));
    } else if (sections_.awaitsSectionWords() && wordIs(WordTrait::section, word.letters)) {
        sections_.sectionWord(place(word.begin, behind));
    } else {
        if (is(u"trowd")) rowIsOpen_ = true;
        if (sections_.awaitsContent() && shows(word.letters)) content(word.begin);
        if (is(u"row")) rowIsOpen_ = false;
    }
}

}  // namespace velmor
