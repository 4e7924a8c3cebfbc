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

constexpr int longestLine = 12;

// The words that matter everywhere.
const WordSet wordsAnywhere({WordTrait::section}, {Word::bin, Word::facingp, Word::intbl, Word::page, Word::par,
                                                   Word::pard, Word::row, Word::sect, Word::trowd});

// Walks the host's text and, at its placeholder, each lifted document, in the order of reading, and reports to
// the sections everything about headers and footers. Escapes and the data of \bin are read as in RTF. One pass,
// no recursion.
class DocumentFlow {
public:
    DocumentFlow(const TableCollection& tables, HeaderSections& sections) : tables_(tables), sections_(sections) {}

    void read(std::u16string_view text) {
        const std::size_t host = findHostDocument(text);
        if (host == noDocument) return;
        enter(text, host, FlowPlace::host);
        while (!readings_.empty()) step();
    }

private:
    struct Level {
        bool body;
        bool inTable;  // its paragraph is in a table
    };

    struct OpenGroup {
        HeaderName name;
        std::size_t begin;
        std::size_t level;
    };

    // A text that is being read, up to its next placeholder.
    struct Reading {
        RtfReader reader;
        std::uint32_t number;  // as in FlowPlace
        std::size_t base;      // levels around it
        bool inTable;
        std::optional<OpenGroup> group{};
    };

    void enter(std::u16string_view text, std::size_t at, std::uint32_t number) {
        const bool in = !readings_.empty() && inTable();
        readings_.push_back({RtfReader(text, at, 0, true), number, levels_.size(), in});
        levels_.push_back({levels_.back().body, false});
        if (number != FlowPlace::host) sections_.enterDocument(number);
    }

    void leave() {
        levels_.resize(readings_.back().base);
        readings_.pop_back();
        if (readings_.empty()) return;
        sections_.leaveDocument();
        sections_.leaveGroup(place(reader().at(), reader().at()));
    }

    RtfReader& reader() noexcept { return readings_.back().reader; }

    void step() {
        const std::size_t from = reader().at();
        const bool found = reader().next();
        readPlainText(from, found ? reader().position() : reader().at());
        if (!found) {
            readPlaceholder();
        } else if (reader().closes()) {
            closeGroup(reader().position());
        } else if (!reader().opens()) {
            takeWord();
        } else if (!readMarker(reader().position())) {
            openGroup(reader().position());
        }
    }

    // Characters and symbols.
    void readPlainText(std::size_t from, std::size_t to) {
        if (!levels_.back().body || !sections_.awaitsContent()) return;
        const std::u16string_view text = reader().text().substr(0, to);
        const std::size_t shown = from + firstShown(text.substr(from));
        if (shown < text.size()) content(shown);
    }

    // What ends the plain text is a placeholder, or the end of the text.
    void readPlaceholder() {
        const std::u16string_view text = reader().text();
        const std::size_t at = reader().at();
        if (at >= text.size()) return leave();
        if (text[at] != tables_.mark()) return reader().limitTo(text.find(tables_.mark(), at));
        const TableCollection::Placeholder found = tables_.placeholderAt(text, at);
        reader().goOnAt(found.end);
        if (!found.document) return;
        enter(tables_.documents()[*found.document].text, 0, static_cast<std::uint32_t>(*found.document + 1));
    }

    // ---- Groups

    bool readMarker(std::size_t index) {
        const std::u16string_view text = reader().text();
        if (!standsAt(text, index, u"{\\*\\korvane")) return false;
        if (standsAt(text, index, SectionGroups::opening) && levels_.back().body) sections_.description();
        const ControlWord word = readWord(text, index + 3);
        const bool isHeader = word.letters == u"korvanenewheader";
        const std::size_t end = skipWhiteSpace(text, word.numberBegin());
        if ((!isHeader && word.letters != u"korvanenewfooter") || !standsAt(text, end, u"}")) return false;
        if (!passesOver()) sections_.marker(isHeader ? HeaderKind::header : HeaderKind::footer, place(index, end + 1));
        reader().goOnAt(end + 1);
        return true;
    }

    void openGroup(std::size_t index) {
        levels_.push_back(levels_.back());
        Reading& reading = readings_.back();
        const GroupOpening opening = readOpening(reader().text(), index);
        const std::u16string_view letters = opening.letters;
        if (!standsAt(reader().text(), opening.word, u"\\")) return;
        const WordMeaning meaning = meaningOf(letters);
        Level& level = levels_.back();
        const auto name = headerNamed(letters);
        if (name && opening.word == index + 1 && !reading.group) {
            reading.group = OpenGroup{*name, index, levels_.size()};
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
        const std::u16string_view text = readings_.back().reader.text();
        return showsText(text.substr(index, findGroupEnd(text, index + 1, true) - index));
    }

    void closeGroup(std::size_t index) {
        Reading& reading = readings_.back();
        if (levels_.size() < reading.base + 2) return;
        if (reading.number == FlowPlace::host && levels_.size() == reading.base + 2) {
            sections_.paragraphEnd(place(index, index));
        }
        if (reading.group && reading.group->level == levels_.size()) {
            const OpenGroup& group = *reading.group;
            FlowPlace whole = place(group.begin, index + 1);
            whole.body = levels_[levels_.size() - 2].body;
            sections_.group(group.name, TextRange{group.begin, index + 1}.of(reader().text()), whole);
            reading.group.reset();
        }
        levels_.pop_back();
        if (levels_.size() > readings_.front().base + 1) sections_.leaveGroup(place(index + 1, index + 1));
    }

    // ---- Words

    void takeWord() {
        if (!sections_.awaitsContent() && !wordsAnywhere.mayHold(reader().text(), reader().position())) return;
        const ControlWord word = reader().word();
        const std::size_t end = endWithBlank(reader().text(), word);
        reader().goOnAt(word.letters == u"bin" ? std::max(word.end, reader().at()) : end);
        if (passesOver()) return;
        const WordMeaning meaning = meaningOf(word.letters);
        if (HeaderWords::has(meaning.word)) return takeHeaderWord(meaning.word, word);
        if (meaning.word == Word::facingp) return sections_.facingPages(place(word.begin, end));
        if (levels_.back().body) takeBodyWord(meaning, place(word.begin, end));
    }

    // A page border goes with the words that describe its line, but without borders of a paragraph.
    void takeHeaderWord(Word name, ControlWord word) {
        const std::u16string_view text = reader().text();
        const bool hasLine = name >= Word::pgbrdrt && name <= Word::pgbrdrsnap;
        WordRun line(text, word.end);
        for (int words = 0; hasLine && words < longestLine && line.next(); ++words) {
            const WordMeaning meaning = meaningOf(line.word().letters);
            if (!meaning.is(WordTrait::borderLine) || meaning.is(WordTrait::edge)) break;
            word.end = line.word().end;
        }
        reader().goOnAt(endWithBlank(text, word));
        sections_.headerWord(name, TextRange{word.begin, word.end}.of(text), place(word.begin, reader().at()));
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
            default:
                break;
        }
        if (meaning.word == Word::trowd) rowIsOpen_ = true;
        if (meaning.is(WordTrait::section)) sections_.sectionWord(at);
        if (meaning.is(WordTrait::shown) || meaning.is(WordTrait::shownCell)) content(at.begin);
        if (meaning.word == Word::row) rowIsOpen_ = false;
    }

    // Inside a header or footer group, which is removed from its document.
    bool passesOver() const noexcept {
        return readings_.back().number != FlowPlace::host && readings_.back().group.has_value();
    }
    bool inTable() const noexcept { return rowIsOpen_ || readings_.back().inTable || levels_.back().inTable; }
    FlowPlace place(std::size_t begin, std::size_t end) const noexcept {
        return {readings_.back().number, begin, end, levels_.back().body, inTable(), levels_.size()};
    }
    void content(std::size_t index) {
        if (levels_.back().body && sections_.awaitsContent()) sections_.content(place(index, index));
    }

    const TableCollection& tables_;
    HeaderSections& sections_;
    std::vector<Reading> readings_;
    std::vector<Level> levels_{{true, false}};
    bool rowIsOpen_ = false;
};

}  // namespace

void Module1::ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    const GroupSet host = poTables.hostGroups();
    if (poTables.documents().empty() && !host.has(Group::newHeader) && !host.has(Group::newFooter)) return;
    HeaderSections sections(options.tolerant);
    DocumentFlow(poTables, sections).read(psText);
    for (auto& [number, changes] : sections.finish()) {
        changes.apply(number == FlowPlace::host ? psText : poTables.documents()[number - 1].text);
    }
}

}  // namespace velmor
