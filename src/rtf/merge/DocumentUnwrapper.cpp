#include "rtf/merge/DocumentUnwrapper.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t noChange = std::u16string_view::npos;

bool endsParagraph(std::u16string_view letters) noexcept {
    for (const std::u16string_view word : {u"par", u"cell", u"row", u"sect", u"nestcell", u"nestrow"}) {
        if (letters == word) return true;
    }
    return false;
}

// A page break alone is no text: the table goes to the new page.
bool showsMoreThanPages(std::u16string_view text) noexcept {
    std::size_t at = firstShown(text);
    while (wordStandsAt(text, at, u"\\page")) at += 5 + firstShown(text.substr(at + 5));
    return at < text.size();
}

// Whether the words that set up a paragraph, from the index on, put it into a table or say that it is in none.
bool saysTable(std::u16string_view text, std::size_t at) noexcept {
    constexpr int fewWords = 40;
    for (int i = 0; i < fewWords && standsAt(text, at = skipWhiteSpace(text, at), u"\\"); ++i) {
        const ControlWord word = readWord(text, at);
        if (word.letters == u"intbl" || word.letters == u"itap") return true;
        if (word.letters.empty() || word.letters == u"pard" || endsParagraph(word.letters)) return false;
        at = word.end;
    }
    return false;
}

}  // namespace

DocumentUnwrapper::DocumentUnwrapper(std::u16string_view text, std::size_t host)
    : text_(text), host_(host), hostPage_(findCodePage(codePageOfDocument(text, hostHeaderStart(text, host)))) {
    for (std::size_t at = host + 1; at < text_.size();) {
        const char16_t unit = text_[at];
        if (unit == u'\\') {
            at = takeBackslash(at);
            continue;
        }
        if (unit == u'{') {
            at = openGroup(at);
            continue;
        }
        if (unit == u'}') {
            closeGroup();
        } else if (skipped_ > 0 && unit != u'\r' && unit != u'\n') {
            --skipped_;
        }
        ++at;
    }
}

TextEdits DocumentUnwrapper::edits() {
    if (!documents_.empty()) {
        const std::uint32_t firstOpen = documents_.front().number;
        std::erase_if(changes_, [&](const Change& change) { return change.document >= firstOpen; });
    }
    TextEdits edits;
    for (Change& change : changes_) {
        if (change.text.empty()) {
            edits.cut(change.begin, change.end);
        } else {
            edits.replaceVal(change.begin, change.end, std::move(change.text));
        }
    }
    return edits;
}

// Returns where to go on.
std::size_t DocumentUnwrapper::takeBackslash(std::size_t index) {
    const ControlWord word = readWord(text_, index);
    if (word.letters.empty()) {
        if (standsAt(text_, index, u"\\'")) {
            takeHex(index);
            return index + 4;
        }
        skipped_ = std::max(skipped_ - 1, 0);
        return index + 2;
    }
    if (word.letters == u"bin") {
        skipped_ = std::max(skipped_ - 1, 0);
        return skipEscape(text_, index);
    }
    takeWord(word);
    return endWithBlank(text_, word);
}

// A byte that means something else in the host becomes the character that it means here.
void DocumentUnwrapper::takeHex(std::size_t index) {
    if (skipped_ > 0) {
        --skipped_;
        return;
    }
    if (documents_.empty() || index + 3 >= text_.size()) return;
    const CodePage* const page = documents_.back().page;
    const std::int32_t read = byteAt(text_, index);
    if (page == nullptr || page == hostPage_ || read < 0x80) return;
    const auto byte = static_cast<std::uint8_t>(read);
    const char16_t meaning = page->meaning(byte);
    if (hostPage_ != nullptr && hostPage_->meaning(byte) == meaning) return;
    if (fontHasOwnCharset(groups_.back().font)) return;
    changes_.push_back({index, index + 4, documents_.back().number, unicodeWord(meaning, groups_.back().fallback)});
}

void DocumentUnwrapper::takeWord(const ControlWord& word) {
    Group& group = groups_.back();
    takeParagraphWord(word);
    if (skipped_ > 0) {
        --skipped_;
    } else if (word.letters == u"u") {
        skipped_ = std::clamp(group.fallback, 0, 255);
    } else if (word.letters == u"uc") {
        group.fallback = numberOf(word.number);
    } else if (word.letters == u"f") {
        group.font = numberOf(word.number);
    } else if (word.letters == u"plain") {
        group.font = hostFont_;
    } else if (documents_.empty()) {
        if (word.letters == u"deff") hostFont_ = numberOf(word.number);
    } else {
        if (documents_.back().depth + 1 == groups_.size()) takeHeaderWord(word);
    }
}

void DocumentUnwrapper::takeHeaderWord(const ControlWord& word) {
    if (!wordIs(WordTrait::documentWord, word.letters)) return;
    if (const std::int32_t page = codePageNamedBy(word)) documents_.back().page = findCodePage(page);
    changes_.push_back({word.begin, endWithBlank(text_, word), documents_.back().number, {}});
}

// ---- Paragraphs

void DocumentUnwrapper::takeParagraphWord(const ControlWord& word) {
    Group& group = groups_.back();
    if (endsParagraph(word.letters)) {
        beginDocuments(word, word.letters != u"par" && word.letters != u"sect");
        group.paragraph = word.end;
        if (word.letters == u"row") group.inRow = false;
    } else if (word.letters == u"trowd") {
        beginDocuments(word, true);
        group.inRow = true;
    } else if (word.letters == u"intbl") {
        group.level = std::max(group.level, 1);
    } else if (word.letters == u"itap") {
        group.level = word.number.empty() ? 1 : numberOf(word.number);
    } else if (word.letters == u"pard") {
        group.level = 0;
        keepInTable(word);
    }
}

// The first paragraph, or row, of the open documents. A row would take what stands before the document in
// the same paragraph into its first cell.
void DocumentUnwrapper::beginDocuments(const ControlWord& word, bool row) {
    if (documents_.empty() || documents_.back().begun || documents_.back().story != groups_.back().story) return;
    Document& document = documents_.back();
    const std::size_t paragraph = document.paragraph;
    groups_.back().paragraph = document.begin;
    for (auto open = documents_.rbegin(); open != documents_.rend() && !open->begun; ++open) open->begun = true;
    const bool isFirst =
        word.letters != u"trowd" || !showsText(text_.substr(document.begin, word.begin - document.begin));
    document.endsParagraph = row && isFirst && showsMoreThanPages(text_.substr(paragraph, document.begin - paragraph));
}

// The paragraphs of a document in a cell stay there.
void DocumentUnwrapper::keepInTable(const ControlWord& word) {
    if (documents_.empty() || documents_.back().story != groups_.back().story) return;
    const std::int32_t level = documents_.back().level;
    if (level == 0 || saysTable(text_, word.end)) return;
    groups_.back().level = level;
    std::u16string words = u"\\intbl";
    if (level > 1) words += u"\\itap" + decimal(level);
    changes_.push_back({word.end, word.end, documents_.back().number, std::move(words)});
}

// ---- Groups

// Returns where to go on.
std::size_t DocumentUnwrapper::openGroup(std::size_t index) {
    skipped_ = 0;
    if (documentStandsAt(text_, index)) {
        openDocument(index);
        return index + 1;
    }
    const std::size_t star = skipWhiteSpace(text_, index + 1);
    const bool starred = standsAt(text_, star, u"\\*");
    const std::size_t first = starred ? skipWhiteSpace(text_, star + 2) : star;
    const std::u16string_view letters =
        standsAt(text_, first, u"\\") ? readWord(text_, first).letters : std::u16string_view();
    if (!documents_.empty() && documents_.back().depth + 1 == groups_.size() &&
        wordIs(WordTrait::documentGroup, letters)) {
        const std::size_t end = findGroupEnd(text_, index + 1, true);
        if (end != noGroupEnd) {
            changes_.push_back({index, end + 1, documents_.back().number, {}});
            return end + 1;
        }
    }
    groups_.push_back(groups_.back());
    if (starred || wordIs(WordTrait::hiddenGroup, letters) || wordIs(WordTrait::shownGroup, letters)) {
        groups_.back().story = ++storyCount_;
        groups_.back().paragraph = index + 1;
    }
    return index + 1;
}

void DocumentUnwrapper::openDocument(std::size_t index) {
    const Group around = groups_.back();
    Group& group = groups_.emplace_back(around);
    group.font = Group{}.font;
    group.fallback = Group{}.fallback;
    // The brace stays, and so does its partner: what the document sets ends there.
    const ControlWord word = readWord(text_, index + 1);
    const bool named = word.letters.size() == 3;
    Document& document = documents_.emplace_back();
    document.number = documentCount_;
    document.depth = groups_.size() - 1;
    document.page = findCodePage(windowsLatin);
    document.begin = index;
    document.opening = named ? changes_.size() : noChange;
    document.story = around.story;
    document.paragraph = around.paragraph;
    document.level = around.inRow ? std::max(around.level, 1) : around.level;
    if (named) {
        // What stands for a \u is counted anew: the document may rely on it.
        const std::u16string_view counted = around.fallback == Group{}.fallback ? u"" : u"\\uc1";
        changes_.push_back({word.begin, endWithBlank(text_, word), documentCount_, std::u16string(counted)});
    }
    ++documentCount_;
}

void DocumentUnwrapper::closeGroup() {
    skipped_ = 0;
    if (groups_.size() > 1) {
        const Group closed = groups_.back();
        groups_.pop_back();
        if (closed.story == groups_.back().story) {
            groups_.back().paragraph = closed.paragraph;
            groups_.back().inRow = closed.inRow;
        }
    }
    if (documents_.empty() || documents_.back().depth != groups_.size()) return;
    closeDocument();
    documents_.pop_back();
}

void DocumentUnwrapper::closeDocument() {
    const Document& document = documents_.back();
    if (document.opening == noChange || !document.endsParagraph) return;
    Change& opening = changes_[document.opening];
    opening.begin = document.begin;
    opening.text.insert(0, u"\\par{");
}

// Readers decode a font's text by its character set, whatever the document's is.
bool DocumentUnwrapper::fontHasOwnCharset(std::int32_t font) {
    if (!std::exchange(charsetsRead_, true)) readFontCharsets();
    return std::binary_search(fontsWithCharset_.begin(), fontsWithCharset_.end(), font);
}

void DocumentUnwrapper::readFontCharsets() {
    const std::size_t table = findText(text_, u"{\\fonttbl", host_, Comparison::binary);
    if (table == text_.npos) return;
    const std::size_t end = findGroupEnd(text_, table + 1, true);
    std::int32_t font = -1;
    RtfReader scanner(text_, table, end);
    while (scanner.nextWord()) {
        const ControlWord word = readWord(text_, scanner.position());
        if (word.letters == u"f") font = numberOf(word.number);
        const bool anyCharset = word.number == u"1" || word.number.empty();
        if (word.letters == u"fcharset" && !anyCharset) fontsWithCharset_.push_back(font);
    }
    std::sort(fontsWithCharset_.begin(), fontsWithCharset_.end());
}

}  // namespace velmor
