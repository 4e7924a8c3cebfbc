#include "rtf/merge/MergeTables.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/ColourTable.h"
#include "rtf/merge/DefaultTabs.h"
#include "rtf/merge/FontTable.h"
#include "rtf/merge/ListTables.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/merge/ReferenceSweep.h"
#include "rtf/merge/StyleSheet.h"
#include "rtf/merge/TableEntries.h"
#include "rtf/pages/PageSetup.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view timesNewRoman = u"{\\fonttbl{\\f0 Times New Roman;}}";

struct Table {
    TextRange group;                // its own
    TextRange place;                // what is taken out with it
    std::u16string_view left = {};  // what replaces it: the braces that a damaged one leaves open
};

// How the shared tables begin in a document, the first form preferred; in the order of SharedTable.
struct TableOpenings {
    Group group;
    std::u16string_view first, second = {};
};
constexpr TableOpenings tableOpenings[] = {
    {Group::fontTable, FontTable::opening},
    {Group::colourTable, ColourTable::opening},
    {Group::styleSheet, StyleSheet::opening},
    {Group::listTable, ListTables::listOpening, u"{\\listtable"},
    {Group::listOverrideTable, ListTables::overrideOpening, u"{\\listoverridetable"},
};

// A table may come in two forms, {\upr{\fonttbl...}{\*\ud{\fonttbl...}}}, for readers without
// Unicode and with it. The group that holds both goes with the first.
TextRange placeOf(std::u16string_view text, TextRange table, bool tolerant) {
    constexpr std::u16string_view pair = u"{\\upr";
    std::size_t begin = table.begin;
    while (begin > 0 && isWhiteSpace(text[begin - 1])) --begin;
    if (begin < pair.size() || !standsAt(text, begin - pair.size(), pair)) return table;
    const std::size_t end = findGroupEnd(text, begin, tolerant);
    return end == noGroupEnd ? table : TextRange{begin - pair.size(), end + 1};
}

// The word of a document's header with these letters and a number.
std::optional<ControlWord> findHeaderWord(std::u16string_view text, std::size_t header, std::u16string_view letters) {
    for (DocumentHeader words(text, header); words.next();) {
        if (words.word().letters == letters && !words.word().number.empty()) return words.word();
    }
    return std::nullopt;
}

// How many paragraphs describe their list themselves.
std::int32_t countOwnLists(std::u16string_view text) {
    constexpr std::u16string_view group = u"{\\*\\pn";
    RtfSearch search(text, true);
    std::int32_t count = 0;
    for (std::size_t at = 0; (at = search.findWord(group, at)) != text.npos; at += group.size()) ++count;
    return count;
}

// ---- Row padding
//
// Readers may give the first row of a whole text the cell padding of any table style. If one document of a run brings
// such a style, the first row of each document without one says that it has no padding of its own.

bool bringsTableStyle(std::u16string_view text, GroupSet groups) noexcept {
    return groups.has(Group::styleSheet) && findText(text, u"\\tsrowd", 0, Comparison::binary) != text.npos;
}

bool saysPadding(std::u16string_view text, std::size_t row) {
    for (WordRun run(text, row); run.next() && run.word().letters != u"cellx";) {
        if (run.word().letters == u"trgaph" || run.word().letters.starts_with(u"trpadd")) return true;
    }
    return false;
}

// Unless the row says what its padding is.
void padFirstRow(std::u16string& text) {
    constexpr std::u16string_view row = u"\\trowd";
    const std::size_t at = RtfSearch(text, true).findWord(row);
    if (at != text.npos && !saysPadding(text, at + row.size())) text.insert(at + row.size(), u"\\trpaddl0\\trpaddr0");
}

class TableMerge final : public DocumentMerge {
public:
    TableMerge(const CleanOptions& options, const LiftedDocuments& lifted)
        : options_(options),
          lifted_(lifted),
          fonts_(options),
          colours_(options),
          styles_(options),
          lists_(options),
          sweep_(options) {}

    void mergeHost(std::u16string& text, TableCollection& tables) override {
        if (lifted_.exist) padRows(text, tables.hostGroups());
        if (options_.report != nullptr) options_.report->documents.emplace_back();
        const std::size_t host = findHostDocument(text);
        if (host == noDocument) return;
        std::size_t header = hostHeaderStart(text, host);
        // The blank that ends the opening word would be text after a table.
        if (options_.tolerant && standsAt(text, header, u" ")) ++header;
        if (options_.tolerant) hostPage_ = page_ = codePageOfDocument(text, header);
        if (options_.tolerant && lifted_.exist) {
            hostTab_ = defaultTabOf(text);
            hostWidth_ = textWidthOf(text);
            lists_.leaveOut(lifted_.ownLists);
        }
        findTables(text, tables.hostGroups());
        if (options_.tolerant) noteHostsSize(text, header);
        readTables(text, header, true);
        placeInHost(header, tables);
        renumberHostsFont();
        change(text);
    }

    void mergeLifted(TableCollection::Document& document) override {
        padRows(document.text, document.groups);
        if (options_.report != nullptr) options_.report->documents.emplace_back();
        const std::size_t header = hostHeaderStart(document.text, 0);
        if (options_.tolerant) page_ = codePageOfDocument(document.text, header);
        findTables(document.text, document.groups);
        readTables(document.text, header, false);
        takeOut();
        if (whole_) {
            beginWhole(header);
            nameDefaultFont(header);
        }
        change(document.text);
        if (whole_) keepTabs(document.text);
    }

    void store(TableCollection& tables) const override {
        tables.store(SharedTable::fonts, fonts_.text());
        tables.store(SharedTable::colours, colours_.text());
        tables.store(SharedTable::styles, styles_.text());
        tables.store(SharedTable::lists, lists_.listTable());
        tables.store(SharedTable::listOverrides, lists_.overrideTable());
    }

    bool canAddFont(std::int32_t number) const noexcept override { return fonts_.canAdd(number); }

private:
    // What is taken out, or put in, while the rest is swept.
    struct Change {
        TextRange range;
        std::u16string text;  // instead
    };

    // The braces that a damaged table leaves open, if the text closes them: in tolerant merging they stay, as their
    // partners do.
    std::u16string_view openBraces(std::u16string_view text, TextRange table) const {
        constexpr std::u16string_view braces = u"{{{{{{{{";
        if (!options_.tolerant || findGroupEnd(text, table.begin + 1, true) == noGroupEnd) return {};
        std::size_t open = 0;
        for (RtfReader scanner(text, table.begin, table.end, true); scanner.nextBrace();) {
            open += scanner.opens() ? 1 : static_cast<std::size_t>(-1);
        }
        return braces.substr(0, open);
    }

    // The first unescaped group with this opening (without regard to case) that is closed.
    std::optional<Table> find(std::u16string_view text, std::u16string_view opening) const {
        const bool tolerant = options_.tolerant;
        const std::size_t begin = RtfSearch(text, tolerant).find(opening, 0, Comparison::text);
        const std::size_t end = begin == nowhere ? noGroupEnd : findGroupEnd(text, begin + 1, tolerant);
        if (end == noGroupEnd) return std::nullopt;
        const TextRange group{begin, end + 1};
        return Table{group, placeOf(text, group, tolerant)};
    }

    // To the next "}": a colour contains no brace, so that one also ends a damaged table.
    std::optional<Table> findColours(std::u16string_view text) const {
        const std::size_t begin = RtfSearch(text, options_.tolerant).find(ColourTable::opening, 0);
        const std::size_t end = begin == nowhere ? nowhere : text.find(u'}', begin);
        if (end == nowhere) return std::nullopt;
        const TextRange group{begin, end + 1};
        return Table{group, group, openBraces(text, group)};
    }

    // A table that lies in another one, or crosses it, is not a table of its own.
    void findTables(std::u16string_view text, GroupSet groups) {
        tables_ = {};
        for (std::size_t kind = 0; kind < tables_.size(); ++kind) {
            const auto& [group, first, second] = tableOpenings[kind];
            if (!groups.has(group)) continue;
            auto table = group == Group::colourTable ? findColours(text) : find(text, first);
            if (!table && !second.empty()) table = find(text, second);
            const auto crosses = [&](const std::optional<Table>& other) {
                return other && table->place.begin < other->place.end && other->place.begin < table->place.end;
            };
            if (table && std::none_of(tables_.begin(), tables_.end(), crosses)) tables_[kind] = table;
        }
    }

    const std::optional<Table>& table(SharedTable kind) const { return tables_[static_cast<std::size_t>(kind)]; }

    // A table of the text with its references renumbered.
    std::u16string swept(std::u16string_view text, const Table& table, const References& references) {
        std::u16string result(table.group.of(text));
        sweep_.begin(result, references, edits_);
        sweep_.sweep(0, result.size());
        edits_.apply(result);
        if (!options_.tolerant || page_ == hostPage_) return result;
        const CodePage* const page = findCodePage(page_);
        return page == nullptr ? result : withCharacters(result, *page, findCodePage(hostPage_));
    }

    void readTables(std::u16string_view text, std::size_t header, bool host) {
        references_ = {};
        fontNumbers_.clear();
        colourNumbers_.clear();
        if (const auto& fonts = table(SharedTable::fonts)) {
            addFonts(fonts->group.of(text), host);
            references_.fonts = &fontNumbers_;
        }
        if (const auto& colours = table(SharedTable::colours)) {
            colours_.add(colours->group.of(text), colourNumbers_, host);
            references_.colours = &colourNumbers_;
        }
        whole_ = options_.tolerant && !host && isWhole(text);
        defaultFontWord_ = options_.tolerant ? findHeaderWord(text, header, u"deff") : std::nullopt;
        styles_.beginDocument(host);
        lists_.beginDocument(host);
        mergeStylesAndLists(text);
        references_.styles = &styles_;
        references_.lists = &lists_;
        references_.defaultStyle = styles_.defaultStyle(whole_);
        references_.formats = true;
        if (whole_) references_.defaultSize = plainSize_;
        keepWidowControl(text, host);
    }

    // \widowctrl of the host holds for the whole text; the paragraphs of a whole document say what holds for them
    // alone.
    void keepWidowControl(std::u16string_view text, bool host) {
        if (!options_.tolerant || (!host && !whole_)) return;
        const bool controls = RtfSearch(text).findWord(u"\\widowctrl") != text.npos;
        if (host) {
            hostControlsWidows_ = controls;
        } else if (controls != hostControlsWidows_) {
            references_.widowControl = controls ? u"\\widctlpar" : u"\\nowidctlpar";
        }
    }

    // Whether the lifted document says how it looks. Any other is a fragment, and looks like its surroundings.
    bool isWhole(std::u16string_view text) const {
        if (table(SharedTable::fonts) || table(SharedTable::styles)) return true;
        for (RtfReader scanner(text, 0, text.size()); scanner.nextWord();) {
            const auto stands = [&](std::u16string_view word) { return standsAt(text, scanner.position() + 1, word); };
            if (std::any_of(PageSetup::documentWords.begin(), PageSetup::documentWords.end(), stands)) return true;
            if (std::any_of(PageSetup::sectionWords.begin(), PageSetup::sectionWords.end(), stands)) return true;
        }
        return false;
    }

    void addFonts(std::u16string_view table, bool host) {
        // The text of a host without fonts must not come to have another document's; readers give it this.
        if (!hostHasFonts_ && fonts_.empty()) {
            NumberMap unused;
            fonts_.add(timesNewRoman, unused);
        }
        fonts_.add(table, fontNumbers_, host ? std::u16string_view() : foreignCharacterSet(), options_.report);
    }

    // That of a lifted document's code page, where the host's is another.
    std::u16string_view foreignCharacterSet() const {
        return options_.tolerant && page_ != hostPage_ ? characterSetOf(page_) : std::u16string_view();
    }

    // Styles refer to lists and lists to styles; the numbers of the lists are settled first.
    void mergeStylesAndLists(std::u16string_view text) {
        References references = references_;
        const auto& styles = table(SharedTable::styles);
        const auto& lists = table(SharedTable::lists);
        const auto& overrides = table(SharedTable::listOverrides);
        if (lists) lists_.readLists(lists->group.of(text));
        if (overrides) lists_.readOverrides(overrides->group.of(text));
        references.lists = &lists_;
        if (styles) styles_.readSheet(swept(text, *styles, references));
        if (whole_) settleDefaultFont();
        if (styles) styles_.addStyles(references_.defaultFont);
        references.lists = nullptr;
        references.styles = &styles_;
        if (lists) lists_.addLists(swept(text, *lists, references));
        if (overrides) lists_.addOverrides(swept(text, *overrides, references));
    }

    void takeOut() {
        changes_.clear();
        for (const auto& table : tables_) {
            if (table) changes_.push_back({table->place, std::u16string(table->left)});
        }
    }

    // A table that the host lacks is placed after the opening word (fonts and colours), or after the tables that it may
    // refer to. One that is never stored leaves nothing there.
    void placeInHost(std::size_t header, const TableCollection& tables) {
        changes_.clear();
        const auto place = [&](SharedTable kind, std::size_t otherwise) {
            const std::optional<Table>& own = table(kind);
            const TextRange range = own ? own->place : TextRange{otherwise, otherwise};
            changes_.push_back({range, tables.placeholder(kind).append(own ? own->left : u"")});
            return range.end;
        };
        // At one place the one that is put in last comes first.
        const std::size_t colours = place(SharedTable::colours, header);
        const std::size_t fonts = place(SharedTable::fonts, header);
        const std::size_t styles = place(SharedTable::styles, std::max(colours, fonts));
        const std::size_t lists = place(SharedTable::lists, std::max({colours, fonts, styles}));
        place(SharedTable::listOverrides, std::max({colours, fonts, lists}));
    }

    // The text of a whole document begins with RTF's own formatting of paragraphs and characters.
    void beginWhole(std::size_t header) {
        std::u16string words = u"\\pard";
        if (references_.defaultStyle != NumberMap::none) words += u"\\s" + decimal(references_.defaultStyle);
        words.append(references_.widowControl).append(u"\\plain");
        if (references_.defaultSize != NumberMap::none) words += u"\\fs" + decimal(references_.defaultSize);
        if (const DirectLook* const look = styles_.directLook(StyleKind::paragraph, u"0")) words += look->words;
        changes_.push_back({{header, header}, std::move(words)});
    }

    // A joined document has a page of its own, an embedded one that of the host.
    void keepTabs(std::u16string& text) const {
        const std::int32_t distance = defaultTabOf(text);
        if (distance == hostTab_) return;
        keepDefaultTabs(text, distance, options_.mergeMode ? textWidthOf(text) : hostWidth_);
    }

    // What readers show where a document names no default font: that of its style 0, else Times New Roman.
    std::int32_t readersFont() {
        const std::int32_t font = styles_.fontOfNormal();
        if (font != NumberMap::none || fonts_.empty()) return font;  // the host's, too, where there are no fonts
        NumberMap number;
        fonts_.add(timesNewRoman, number, foreignCharacterSet());
        return number.find(u"0");
    }

    // What the document shows where it names no font. Styles are read, and not yet added.
    void settleDefaultFont() {
        const bool isNamed = defaultFontWord_ && table(SharedTable::fonts);
        defaultFont_ = isNamed ? fontNumbers_.find(defaultFontWord_->number) : NumberMap::none;
        if (defaultFont_ == NumberMap::none) defaultFont_ = readersFont();
        if (defaultFont_ != hostFont_) references_.defaultFont = defaultFont_;
    }

    // Readers give the size that the host's header names before its tables to styles that name none, and do not change
    // it at \plain.
    void noteHostsSize(std::u16string_view text, std::size_t header) {
        constexpr std::int32_t rtfSize = 24;
        const auto& fonts = table(SharedTable::fonts);
        const auto size = fonts ? findHeaderWord(text, header, u"fs") : std::nullopt;
        if (size && size->begin < fonts->group.begin && numberOf(size->number) != rtfSize) plainSize_ = rtfSize;
    }

    void renumberHostsFont() {
        if (!options_.tolerant) return;
        if (!table(SharedTable::fonts)) {
            hostHasFonts_ = false;
            if (defaultFontWord_) fontNumbers_.set(defaultFontWord_->number, hostFont_ = 0);
            references_.fonts = &fontNumbers_;
        } else if (defaultFontWord_) {
            hostFont_ = fontNumbers_.find(defaultFontWord_->number);
        }
    }

    // A whole document's default font is named at its beginning, and where \plain goes back to it.
    void nameDefaultFont(std::size_t header) {
        if (defaultFont_ == NumberMap::none) return;
        const TextRange atBeginning{header, header};
        const TextRange place =
            defaultFontWord_ ? TextRange{defaultFontWord_->begin, defaultFontWord_->end} : atBeginning;
        changes_.push_back({place, u"\\f" + decimal(defaultFont_)});
    }

    void change(std::u16string& text) {
        // An insertion at the begin of a table precedes it.
        std::stable_sort(changes_.begin(), changes_.end(), [](const Change& a, const Change& b) {
            return std::tie(a.range.begin, a.range.end) < std::tie(b.range.begin, b.range.end);
        });
        sweep_.begin(text, references_, edits_);
        std::size_t at = 0;
        for (Change& next : changes_) {
            sweep_.sweep(at, next.range.begin);
            if (next.text.empty()) {
                edits_.cut(next.range.begin, next.range.end);
            } else {
                edits_.replaceByWordsVal(next.range.begin, next.range.end, std::move(next.text));
            }
            at = next.range.end;
        }
        sweep_.sweep(at, text.size());
        edits_.apply(text);
    }

    void padRows(std::u16string& text, GroupSet groups) const {
        if (lifted_.bringTableStyles && !bringsTableStyle(text, groups)) padFirstRow(text);
    }

    CleanOptions options_;
    LiftedDocuments lifted_;
    FontTable fonts_;
    ColourTable colours_;
    StyleSheet styles_;
    ListTables lists_;
    std::int32_t hostFont_ = NumberMap::none;  // its default, if it names one
    bool hostHasFonts_ = true;
    bool hostControlsWidows_ = false;
    std::int32_t plainSize_ = NumberMap::none;  // RTF's own, where the host's \plain means another one
    std::int32_t hostTab_ = 0;
    std::int32_t hostWidth_ = 0;
    std::int32_t hostPage_ = windowsLatin;
    std::int32_t page_ = windowsLatin;  // the current document's
    ReferenceSweep sweep_;

    // Of the current document.
    bool whole_ = false;
    std::optional<ControlWord> defaultFontWord_;  // its \deff
    std::int32_t defaultFont_ = NumberMap::none;
    std::array<std::optional<Table>, std::size(tableOpenings)> tables_;  // by SharedTable
    NumberMap fontNumbers_, colourNumbers_;
    References references_;
    std::vector<Change> changes_;
    TextEdits edits_;
};

}  // namespace

void LiftedDocuments::note(std::u16string_view text, GroupSet groups) {
    bringTableStyles = bringTableStyles || bringsTableStyle(text, groups);
    ownLists += countOwnLists(text);
}

void LiftedDocuments::add(const LiftedDocuments& other) noexcept {
    exist = exist || other.exist;
    bringTableStyles = bringTableStyles || other.bringTableStyles;
    ownLists += other.ownLists;
}

std::unique_ptr<DocumentMerge> DocumentMerge::begin(const CleanOptions& options, const LiftedDocuments& lifted) {
    return std::make_unique<TableMerge>(options, lifted);
}

namespace Module1 {

void MergeDocumentTables(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    LiftedDocuments lifted;
    lifted.exist = !poTables.documents().empty();
    if (options.tolerant && lifted.exist) {
        lifted.note(psText, poTables.hostGroups());
        for (const TableCollection::Document& document : poTables.documents()) {
            lifted.note(document.text, document.groups);
        }
    }
    TableMerge merge(options, lifted);
    try {
        merge.mergeHost(psText, poTables);
        for (TableCollection::Document& document : poTables.documents()) merge.mergeLifted(document);
    } catch (...) {
        merge.store(poTables);  // what was taken out of the host returns
        throw;
    }
    merge.store(poTables);
}

}  // namespace Module1
}  // namespace velmor
