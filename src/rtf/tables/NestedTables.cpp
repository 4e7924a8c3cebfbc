#include "rtf/tables/NestedTables.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/RowDefinition.h"
#include "rtf/tables/TableWords.h"

namespace velmor {
namespace {

constexpr std::size_t highestLevel = 9;
constexpr std::size_t inch = 1440;  // in twips

constexpr std::u16string_view inTableWords =
    u"\\intbl\\itap1\\intbl\\itap2\\intbl\\itap3\\intbl\\itap4\\intbl\\itap5\\intbl\\itap6\\intbl\\itap7\\intbl\\itap8"
    u"\\intbl\\itap9";
constexpr std::u16string_view inTableWord = inTableWords.substr(0, 6);
constexpr std::u16string_view endOfParagraph = u"\\par";
constexpr std::u16string_view keepTogether = u"\\trkeep";

constexpr std::u16string_view inTable(std::size_t level) {
    return inTableWords.substr((level - 1) * 12, 12);
}
constexpr std::u16string_view levelWord(std::size_t level) {
    return inTable(level).substr(6);
}
constexpr std::u16string_view levelDigit(std::size_t level) {
    return inTable(level).substr(11);
}

struct Definition {
    RowDefinition row;
    std::size_t place;  // of its cut
};

// An open pair of markers, or an open group with separate paragraphs.
struct Open {
    std::size_t end;    // of its text
    std::size_t level;  // 0: separate paragraphs, which do not change

    // The current paragraph. The places are reserved for changes that may become necessary.
    std::size_t paragraph;                // begins here
    std::size_t startPlace = nowhere;     // until the first paragraph is set up
    std::size_t defaultsPlace = nowhere;  // after the \pard of a paragraph without \intbl
    std::size_t setUpPlace = nowhere;     // after a table or row: the paragraph may have to be set up again
    bool followsTable = false;            // and no paragraph has ended since
    std::size_t defaults = nowhere;       // the last \pard

    // The current row.
    bool inRow = false;
    std::size_t rowBegin = 0;
    std::size_t cells = 0;
    std::size_t nestedCells = 0;
    std::vector<Definition> definitions{};
    std::size_t nestedDefinition = nowhere;         // the begin of one that is in its group already
    std::optional<RowDefinition> lastDefinition{};  // of the rows up to it

    bool isNested() const noexcept { return level > 1; }
};

// The ends of the groups with separate paragraphs, by their first words; groups without an end are left out. One pass.
std::unordered_map<std::size_t, std::size_t> findApartGroups(std::u16string_view text) {
    std::unordered_map<std::size_t, std::size_t> ends;
    std::vector<std::size_t> open;  // the first words; 0 for other groups
    for (RtfReader braces(text, 0, text.size(), true); braces.nextBrace();) {
        if (braces.opens()) {
            open.push_back(tables::firstWordOfApartGroup(text, braces.position()));
        } else if (!open.empty()) {
            if (open.back() != 0) ends.emplace(open.back(), braces.position());
            open.pop_back();
        }
    }
    return ends;
}

// Reads the text once, from left to right, and collects the changes.
class Conversion {
public:
    Conversion(std::u16string_view text, bool tolerant)
        : text_(text), tolerant_(tolerant), reader_(text, 0, 0, tolerant) {}

    TextEdits collect() {
        for (const TableMarker& marker : findMarkerPairs(text_, tolerant_)) {
            readUpTo(marker.begin);
            marker.isStart ? enter(marker) : leave(marker);
        }
        return std::move(edits_);
    }

private:
    // ---- Pairs

    void readUpTo(std::size_t limit) {
        reader_.limitTo(limit);
        while (reader_.at() < limit) {
            if (isInTable()) {
                readTable(limit);
            } else if (!open_.empty() && open_.back().end < limit) {
                reader_.goOnAt(open_.back().end);
                open_.pop_back();
            } else {
                reader_.goOnAt(limit);
            }
        }
    }

    // Reads up to the limit, or to the first word of a group with separate paragraphs.
    void readTable(std::size_t limit) {
        while (reader_.nextWord()) {
            if (!tables::levelWords.mayHold(text_, reader_.position())) continue;
            take(reader_.word(), limit);
            if (!isInTable()) return;
        }
    }

    void enter(const TableMarker& marker) {
        // A pair that crosses the end of a separate group belongs neither to it nor to the table around it.
        if (!open_.empty() && marker.tableEnd > open_.back().end) return;
        const std::size_t level = open_.empty() ? 1 : std::min(highestLevel, open_.back().level + 1);
        if (level > 1) prepareForTable(marker.begin);
        paragraphPlaces_.clear();
        reader_.goOnAt(marker.end);
        Open& table = open_.emplace_back(Open{marker.tableEnd, level, marker.end});
        if (table.isNested()) table.startPlace = edits_.reserve(marker.end);
    }

    void leave(const TableMarker& marker) {
        if (open_.empty() || open_.back().end != marker.begin) return;
        for (const std::size_t place : paragraphPlaces_) edits_.fill(place, inTable(open_.back().level));
        paragraphPlaces_.clear();
        open_.pop_back();
        reader_.goOnAt(marker.end);
        if (!isInTable()) return;
        beginParagraph(marker.end);
        open_.back().setUpPlace = edits_.reserve(afterBraces(marker.end));
        open_.back().followsTable = true;
    }

    // Text before a table in its cell becomes a paragraph. An empty paragraph separates two tables, which would
    // otherwise be shown as one.
    void prepareForTable(std::size_t index) {
        const Open& outer = open_.back();
        if (!outer.followsTable && !showsText(text_.substr(outer.paragraph, index - outer.paragraph))) return;
        endParagraph(false);
        edits_.insert(index, endOfParagraph);
    }

    // ---- Words

    void take(const ControlWord& word, std::size_t limit) {
        const WordMeaning meaning = meaningOf(word.letters);
        switch (meaning.word) {
            case Word::cell:
            case Word::nestcell:
                return takeCell(word);
            case Word::row:
            case Word::nestrow:
                return takeRow(word);
            case Word::trowd:
                return takeDefinition(word.begin, limit);
            case Word::intbl:
                return takeInTable(word);
            case Word::itap:
                return takeLevel(word);
            case Word::sect:
                if (!open_.back().inRow) break;
                edits_.replace(word.begin, word.end, endOfParagraph);
                [[fallthrough]];
            case Word::par:
                endParagraph(false);
                paragraphPlaces_.push_back(edits_.reserve(word.end));
                beginParagraph(word.end);
                break;
            case Word::pard:
                return takeParagraphDefaults(word);
            default:
                if (meaning.is(WordTrait::apartGroup)) takeApartText(word);
        }
    }

    void takeCell(const ControlWord& word) {
        endParagraph(true);
        if (open_.back().isNested() && word.letters == u"cell") edits_.insert(word.begin + 1, u"nest");
        open_.back().inRow = true;
        ++(word.letters == u"cell" ? open_.back().cells : open_.back().nestedCells);
        beginParagraph(word.end);
    }

    void takeInTable(const ControlWord& word) {
        Open& table = open_.back();
        table.startPlace = table.defaultsPlace = nowhere;
        table.inRow = true;
        paragraphPlaces_.clear();
        if (!standsAt(text_, word.end, u"\\itap")) edits_.insert(word.end, levelWord(table.level));
    }

    void takeLevel(const ControlWord& word) {
        Open& table = open_.back();
        table.startPlace = nowhere;
        const std::u16string_view digit = levelDigit(table.level);
        const std::size_t number = word.numberBegin();
        const bool isNegative = word.number.substr(0, 1) == u"-";
        if (!word.number.empty() && !isNegative) {
            edits_.replace(number, tolerant_ ? word.end : number + 1, digit);
            return;
        }
        const bool hasInTable = word.begin >= 6 && standsAt(text_, word.begin - 6, inTableWord);
        if (!hasInTable || !standsAt(text_, word.end, u"\\")) edits_.insert(word.begin, inTableWord);
        // White space is replaced, unless it must follow the number; other text stays.
        const char16_t next = word.end < text_.size() ? text_[word.end] : u'\0';
        const char16_t second = word.end + 1 < text_.size() ? text_[word.end + 1] : u'\0';
        const bool givesWay = !isNegative && isWhiteSpace(next) && !isDigit(second) && second != u' ';
        edits_.replace(number, word.end + givesWay, digit);
    }

    void takeParagraphDefaults(const ControlWord& word) {
        Open& table = open_.back();
        table.defaults = word.begin;
        table.defaultsPlace = edits_.reserve(word.end);
        table.startPlace = table.setUpPlace = nowhere;
        paragraphPlaces_.push_back(table.defaultsPlace);
    }

    void takeDefinition(std::size_t index, std::size_t limit) {
        Open& table = open_.back();
        table.inRow = true;
        if (!table.isNested()) return;
        if (tables::isNestedDefinition(text_, index)) {
            table.nestedDefinition = index;
            return;
        }
        const RowDefinition row = rowDefinitionAt(text_, index, limit);
        table.definitions.push_back({row, edits_.reserve(index)});
        reader_.goOnAt(row.range.end);
    }

    void takeApartText(const ControlWord& word) {
        if (!apartGroups_) apartGroups_ = findApartGroups(text_);
        const auto group = apartGroups_->find(word.begin);
        if (group == apartGroups_->end() || group->second > open_.back().end) return;
        open_.push_back(Open{group->second, 0, word.end});
    }

    void takeRow(const ControlWord& word) {
        endParagraph(true);
        Open& table = open_.back();
        std::size_t end = word.end;
        if (table.isNested()) {
            const bool isDone = table.nestedDefinition != nowhere;
            endDefinitions(table);
            if (!isDone && (table.lastDefinition || table.cells + table.nestedCells != 0)) {
                nestRow(word, table.lastDefinition);
                end += standsAt(text_, end, u" ");
            } else if (word.letters == u"row") {
                edits_.insert(word.begin + 1, u"nest");
            }
            table.nestedDefinition = nowhere;
        }
        end += end == word.end && standsAt(text_, end, u" }");
        table.inRow = false;
        table.rowBegin = end;
        table.cells = table.nestedCells = 0;
        beginParagraph(end);
        if (table.isNested()) table.startPlace = table.setUpPlace = edits_.reserve(afterBraces(end));
    }

    // The row's own definitions are removed from it, unless it is done already.
    void endDefinitions(Open& table) {
        if (table.nestedDefinition != nowhere) {
            table.lastDefinition = rowDefinitionAt(text_, table.nestedDefinition, table.end);
        } else if (!table.definitions.empty()) {
            table.lastDefinition = table.definitions.back().row;
            for (const Definition& own : table.definitions) edits_.fillCut(own.place, own.row.range.end);
        }
        table.definitions.clear();
    }

    void nestRow(const ControlWord& word, const std::optional<RowDefinition>& definition) {
        const std::size_t row = word.begin;
        const std::size_t keep = row - std::min(row, keepTogether.size());
        // A \trkeep may directly precede the row's end; it is a part of the definition.
        const bool isKept = standsAt(text_, keep, keepTogether) && !isEscaped(text_, keep) &&
                            keep >= open_.back().paragraph && (!definition || keep >= definition->range.end);
        if (isKept) edits_.cut(keep, row);
        edits_.insert(row, u"\\pard");
        edits_.insert(row, inTable(open_.back().level));
        edits_.insert(row, u"\\nowidctlpar{\\*\\nesttableprops");
        insertDefinition(row, definition);
        if (isKept) edits_.insert(row, keepTogether);
        if (word.letters == u"row") edits_.insert(row + 1, u"nest");
        // The blank that ends the word would be text after the brace.
        edits_.insert(word.end + standsAt(text_, word.end, u" "), u"}");
    }

    // Readers drop cells without a column, so the row gets the missing columns, of one inch each.
    void insertDefinition(std::size_t index, const std::optional<RowDefinition>& definition) {
        const Open& table = open_.back();
        std::size_t columns = 0, right = 0;
        if (definition && mayRepeat(definition->range)) {
            edits_.replaceVal(index, index, std::u16string(definition->range.of(text_)));
            columns = definition->columns;
            right = definition->right;
        } else {
            edits_.insert(index, u"\\trowd");
        }
        std::u16string added;
        // Nested cells belong to the row unless it has others.
        for (; columns < (table.cells != 0 ? table.cells : table.nestedCells); ++columns) {
            right += inch;
            added.append(u"\\cellx").append(decimal(right));
        }
        if (!added.empty()) edits_.replaceVal(index, index, std::move(added));
    }

    // Rows that repeat a definition could enlarge a text without limit.
    bool mayRepeat(TextRange definition) {
        if (definition.begin >= open_.back().rowBegin) return true;
        const std::size_t length = definition.end - definition.begin;
        if (length > repeats_) return false;
        repeats_ -= length;
        return true;
    }

    // ---- Paragraphs

    // Braces end groups that began before the place, and the settings in them.
    std::size_t afterBraces(std::size_t index) const {
        std::size_t end = skipClosingBraces(text_, index);
        while (end > index && text_[end - 1] != u'}') --end;
        return end;
    }

    void beginParagraph(std::size_t index) {
        open_.back().paragraph = index;
        open_.back().followsTable = false;
    }

    // Gives the ending paragraph the words that it needs to be in its table.
    void endParagraph(bool endsInRow) {
        Open& table = open_.back();
        if (table.startPlace != nowhere) edits_.fillApart(table.startPlace, inTable(table.level));
        if (table.setUpPlace != nowhere) setUpAgain();  // possibly at the same place
        if (table.defaultsPlace != nowhere) {
            const std::size_t level = table.inRow || endsInRow ? table.level : table.level - 1;
            if (level != 0) edits_.fill(table.defaultsPlace, inTable(level));
        }
        table.startPlace = table.defaultsPlace = table.setUpPlace = nowhere;
    }

    // After a table the paragraph is always set up again, after a row only if it has settings.
    void setUpAgain() {
        const Open& table = open_.back();
        std::u16string words = table.defaults == nowhere ? u"" : paragraphWords(text_, table.defaults);
        if (words.empty() && !table.followsTable) return;
        words.insert(0, u"\\pard").append(inTable(table.level));
        edits_.fillApart(table.setUpPlace, edits_.keep(std::move(words)));
    }

    bool isInTable() const noexcept { return !open_.empty() && open_.back().level != 0; }

    std::u16string_view text_;
    bool tolerant_;
    RtfReader reader_;
    std::optional<std::unordered_map<std::size_t, std::size_t>> apartGroups_;  // found on first use
    TextEdits edits_;
    std::vector<Open> open_;
    std::vector<std::size_t> paragraphPlaces_;  // after \par and \pard, since the last \intbl or pair
    std::size_t repeats_ = 64 * text_.size();   // remaining units for repeated definitions
};

}  // namespace

void Module1::ConvertNestedTables(std::u16string& psText, const CleanOptions& options) {
    Conversion(psText, options.tolerant).collect().apply(psText);
}

}  // namespace velmor
