#include "rtf/pages/HeadersFooters.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/pages/HeaderSections.h"
#include "rtf/pages/SectionGroups.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"

namespace velmor {
namespace {

constexpr std::u16string_view markers[] = {u"{\\*\\korvanenewheader", u"{\\*\\korvanenewfooter"};

constexpr int longestLine = 12;

// The words that matter everywhere.
const WordSet wordsAnywhere({WordTrait::section}, {Word::bin, Word::facingp, Word::intbl, Word::page, Word::par,
                                                   Word::pard, Word::row, Word::sect, Word::trowd});

// Walks the host's text and, at its placeholder, each lifted document, in the order of reading, and reports to
// the sections everything about headers and footers. Escapes and the data of \bin are read as in RTF. One pass,
// no recursion.
class DocumentFlow {
public:
    DocumentFlow(std::u16string_view host, const TableCollection& tables, HeaderSections& sections)
        : host_(host), tables_(tables), sections_(sections) {}

    void run() {
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

private:
    struct Level {
        bool body;
        bool inTable;     // its paragraph is in a table
        bool passedOver;  // inside a header or footer group that is removed from its document
    };

    struct OpenGroup {
        HeaderName name;
        std::size_t begin;
        std::size_t level;
        bool body;
    };

    // A text that is being read, and the place reached.
    struct Reading {
        std::u16string_view text;
        std::size_t at;
        std::uint32_t number;  // as in FlowPlace
        std::size_t base;      // levels around it
        bool inTable;
        std::optional<OpenGroup> group;
    };

    void enter(std::u16string_view text, std::size_t at, std::uint32_t number) {
        const bool in = !readings_.empty() && inTable();
        readings_.push_back({text, at, number, levels_.size(), in, std::nullopt});
        levels_.push_back({levels_.back().body, false, false});
        if (number != FlowPlace::host) sections_.enterDocument(number);
    }

    void leave() {
        levels_.resize(readings_.back().base);
        readings_.pop_back();
        if (readings_.empty()) return;
        sections_.leaveDocument();
        sections_.leaveGroup(place(readings_.back().at, readings_.back().at));
    }

    void step() {
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

    void readPlaceholder() {
        Reading& reading = readings_.back();
        const TableCollection::Placeholder found = tables_.placeholderAt(reading.text, reading.at);
        reading.at = found.end;
        if (!found.document) return;
        enter(tables_.documents()[*found.document].text, 0, static_cast<std::uint32_t>(*found.document + 1));
    }

    void readPlainText() {
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

    bool readMarker() {
        Reading& reading = readings_.back();
        if (!standsAt(reading.text, reading.at, u"{\\*\\korvane")) return false;
        if (standsAt(reading.text, reading.at, SectionGroups::opening) && levels_.back().body) sections_.description();
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

    void openGroup() {
        const std::size_t index = readings_.back().at++;
        levels_.push_back(levels_.back());
        classify(index);
    }

    void classify(std::size_t index) {
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
    bool showsResult(std::size_t index) const {
        if (!levels_.back().body || !sections_.awaitsContent()) return false;
        const std::u16string_view text = readings_.back().text;
        return showsText(text.substr(index, findGroupEnd(text, index + 1, true) - index));
    }

    void closeGroup() {
        Reading& reading = readings_.back();
        const std::size_t index = reading.at++;
        if (levels_.size() < reading.base + 2) return;
        if (reading.number == FlowPlace::host && levels_.size() == reading.base + 2) {
            sections_.paragraphEnd(place(index, index));
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

    void readBackslash() {
        Reading& reading = readings_.back();
        const std::size_t index = reading.at;
        if (!sections_.awaitsContent() && !wordsAnywhere.mayHold(reading.text, index)) {
            reading.at = index + 2;
            return;
        }
        const ControlWord word = readWord(reading.text, index);
        if (word.letters.empty()) {
            if (index + 1 < reading.text.size() && isShownSymbol(reading.text[index + 1])) content(index);
            reading.at = index + 2;
            return;
        }
        reading.at = word.letters == u"bin" ? std::max(word.end, skipEscape(reading.text, index))
                                            : endWithBlank(reading.text, word);
        if (!levels_.back().passedOver) take(word, std::min(reading.at, reading.text.size()));
    }

    void take(const ControlWord& word, std::size_t end) {
        const WordMeaning meaning = meaningOf(word.letters);
        if (HeaderWords::has(meaning.word)) return takeHeaderWord(meaning.word, word);
        if (meaning.word == Word::facingp) return sections_.facingPages(place(word.begin, end));
        if (levels_.back().body) takeBodyWord(meaning, place(word.begin, end));
    }

    // A page border goes with the words that describe its line, but without borders of a paragraph.
    void takeHeaderWord(Word name, ControlWord word) {
        Reading& reading = readings_.back();
        const bool hasLine = name >= Word::pgbrdrt && name <= Word::pgbrdrsnap;
        WordRun line(reading.text, word.end);
        for (int words = 0; hasLine && words < longestLine && line.next(); ++words) {
            const WordMeaning meaning = meaningOf(line.word().letters);
            if (!meaning.is(WordTrait::borderLine) || meaning.is(WordTrait::edge)) break;
            word.end = line.word().end;
        }
        reading.at = endWithBlank(reading.text, word);
        sections_.headerWord(name, TextRange{word.begin, word.end}.of(reading.text), place(word.begin, reading.at));
    }

    void takeBodyWord(WordMeaning meaning, const FlowPlace& at) {
        switch (meaning.word) {
            case Word::par:
                return sections_.paragraphEnd(at);
            case Word::pard:
            case Word::intbl:
                levels_.back().inTable = meaning.word == Word::intbl;
                return;
            case Word::page:
                return sections_.pageBreak(at);
            case Word::sect:
                return sections_.sectionBreak(at);
            case Word::sectd:
                return sections_.sectionDefaults(at);
            case Word::trowd:
                rowIsOpen_ = true;
                break;
            default:
                break;
        }
        if (meaning.is(WordTrait::section)) sections_.sectionWord(at);
        if (meaning.is(WordTrait::shown) || meaning.is(WordTrait::shownCell)) content(at.begin);
        if (meaning.word == Word::row) rowIsOpen_ = false;
    }

    bool inTable() const noexcept { return rowIsOpen_ || readings_.back().inTable || levels_.back().inTable; }
    FlowPlace place(std::size_t begin, std::size_t end) const noexcept {
        return {readings_.back().number, begin, end, levels_.back().body, inTable(), levels_.size()};
    }
    void content(std::size_t index) {
        if (levels_.back().body && sections_.awaitsContent()) sections_.content(place(index, index));
    }

    std::u16string_view host_;
    const TableCollection& tables_;
    HeaderSections& sections_;
    std::vector<Reading> readings_;
    std::vector<Level> levels_;
    bool rowIsOpen_ = false;
};

}  // namespace

void Module1::ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    const GroupSet host = poTables.hostGroups();
    if (poTables.documents().empty() && !host.has(Group::newHeader) && !host.has(Group::newFooter)) return;
    HeaderSections sections(options.tolerant);
    DocumentFlow(psText, poTables, sections).run();
    for (auto& [number, changes] : sections.finish()) {
        changes.apply(number == FlowPlace::host ? psText : poTables.documents()[number - 1].text);
    }
}

}  // namespace velmor
