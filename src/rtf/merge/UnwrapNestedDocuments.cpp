#include "rtf/merge/UnwrapNestedDocuments.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// ---- Exact

// The braces of the documents after `from`, up to the first that is not closed.
TextEdits unwrapPlainly(std::u16string_view text, std::size_t from) {
    struct Open {
        std::size_t depth;
        std::size_t edits;  // before its own
    };
    TextEdits edits;
    std::vector<Open> open;
    for (RtfReader reader(text, from, text.size()); reader.nextBrace();) {
        const std::size_t index = reader.position();
        if (reader.opens() && documentStandsAt(text, index) && standsAt(text, index + 5, u"1")) {
            open.push_back({reader.depth(), edits.size()});
            const std::size_t end = index + 6;
            // A blank after the opening word ended it, and may end the preceding word.
            standsAt(text, end, u" ") ? edits.cutJoining(index, end) : edits.cut(index, end);
        } else if (reader.closes() && !open.empty() && open.back().depth == reader.depth() + 1) {
            edits.cut(index, index + 1);
            open.pop_back();
        }
    }
    if (!open.empty()) edits.truncate(open.front().edits);
    return edits;
}

// ---- Tolerant

// A page break alone is not text: the table begins on the new page.
bool showsMoreThanPages(std::u16string_view text) noexcept {
    std::size_t at = firstShown(text);
    while (wordStandsAt(text, at, u"\\page")) at += 5 + firstShown(text.substr(at + 5));
    return at < text.size();
}

// Whether the words that set up a paragraph at the index contain \intbl or \itap.
bool saysTable(std::u16string_view text, std::size_t at) noexcept {
    constexpr int fewWords = 40;
    WordRun run(text, at);
    for (int i = 0; i < fewWords && run.next(); ++i) {
        const WordMeaning meaning = meaningOf(run.word().letters);
        if (meaning.word == Word::intbl || meaning.word == Word::itap) return true;
        if (meaning.word == Word::pard || meaning.is(WordTrait::endsParagraph)) return false;
    }
    return false;
}

// Tolerant unwrapping of the documents in the host that begins at `host`.
class DocumentUnwrapper {
public:
    DocumentUnwrapper(std::u16string_view text, std::size_t host)
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

    TextEdits edits() && {
        if (!documents_.empty()) edits_.truncate(documents_.front().edits);
        return std::move(edits_);
    }

private:
    // The state that RTF restores after a group. The paragraph, and the row around it, go on after a group of the same
    // story.
    struct Group {
        std::int32_t font = -1;
        std::int32_t fallback = 1;  // fallback units of one \u
        std::uint32_t story = 0;    // texts with paragraphs of their own: the body, a footnote, ...
        std::size_t paragraph = 0;  // the begin of the current one
        TableLevel level;           // and its level
    };

    struct Document {
        Group around;
        std::size_t depth;  // of the groups outside
        const CodePage* page;
        std::size_t begin;
        std::size_t edits;  // before its own; the first of these may become a \par
        bool isUnwrapped = false;
        bool begun = false;  // its first paragraph or row has begun
        bool endsParagraph = false;
    };

    // Returns the index to continue at.
    std::size_t takeBackslash(std::size_t index) {
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

    // A byte with another meaning in the host becomes its character.
    void takeHex(std::size_t index) {
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
        edits_.replaceVal(index, index + 4, unicodeWord(meaning, groups_.back().fallback));
    }

    void takeWord(const ControlWord& word) {
        static const WordSet words(
            {WordTrait::documentWord, WordTrait::endsParagraph},
            {Word::f, Word::intbl, Word::itap, Word::pard, Word::plain, Word::trowd, Word::u, Word::uc});
        const WordMeaning meaning = words.mayHold(text_, word.begin) ? meaningOf(word.letters) : WordMeaning{};
        Group& group = groups_.back();
        takeParagraphWord(word, meaning);
        if (skipped_ > 0) {
            --skipped_;
        } else if (meaning.word == Word::u) {
            skipped_ = std::clamp(group.fallback, 0, 255);
        } else if (meaning.word == Word::uc) {
            group.fallback = numberOf(word.number);
        } else if (meaning.word == Word::f) {
            group.font = numberOf(word.number);
        } else if (meaning.word == Word::plain) {
            group.font = hostFont_;
        } else if (documents_.empty()) {
            if (word.letters == u"deff") hostFont_ = numberOf(word.number);
        } else if (meaning.is(WordTrait::documentWord) && documents_.back().depth + 1 == groups_.size()) {
            takeHeaderWord(word);
        }
    }

    void takeHeaderWord(const ControlWord& word) {
        if (const std::int32_t page = codePageNamedBy(word)) documents_.back().page = findCodePage(page);
        edits_.cut(word.begin, endWithBlank(text_, word));
    }

    // ---- Paragraphs

    void takeParagraphWord(const ControlWord& word, WordMeaning meaning) {
        Group& group = groups_.back();
        group.level.take(word, meaning.word);
        if (meaning.is(WordTrait::endsParagraph)) {
            beginDocuments(word, meaning.word != Word::par && meaning.word != Word::sect);
            group.paragraph = word.end;
        } else if (meaning.word == Word::trowd) {
            beginDocuments(word, true);
        } else if (meaning.word == Word::pard) {
            keepInTable(word);
        }
    }

    // Whether the paragraph is one of the innermost document's own.
    bool isInDocument() const noexcept {
        return !documents_.empty() && documents_.back().around.story == groups_.back().story;
    }

    // The first paragraph, or row, of the open documents. A row would include text that precedes the document in
    // the same paragraph in its first cell.
    void beginDocuments(const ControlWord& word, bool row) {
        if (!isInDocument() || documents_.back().begun) return;
        Document& document = documents_.back();
        groups_.back().paragraph = document.begin;
        for (auto open = documents_.rbegin(); open != documents_.rend() && !open->begun; ++open) open->begun = true;
        const bool isFirst =
            word.letters != u"trowd" || !showsText(text_.substr(document.begin, word.begin - document.begin));
        document.endsParagraph =
            row && isFirst && showsMoreThanPages(TextRange{document.around.paragraph, document.begin}.of(text_));
    }

    // The paragraphs of a document in a cell stay there.
    void keepInTable(const ControlWord& word) {
        if (!isInDocument()) return;
        const TableLevel& around = documents_.back().around.level;
        const Level level = std::max(around.paragraph, Level{around.rowBegun});
        if (level == 0 || saysTable(text_, word.end)) return;
        groups_.back().level.paragraph = level;
        std::u16string words = u"\\intbl";
        if (level > 1) words += u"\\itap" + decimal(level);
        edits_.replaceVal(word.end, word.end, std::move(words));
    }

    // ---- Groups

    // Returns the index to continue at.
    std::size_t openGroup(std::size_t index) {
        skipped_ = 0;
        if (documentStandsAt(text_, index)) {
            openDocument(index);
            return index + 1;
        }
        const GroupOpening opening = readOpening(text_, index);
        const WordMeaning meaning = meaningOf(opening.letters);
        if (!documents_.empty() && documents_.back().depth + 1 == groups_.size() &&
            meaning.is(WordTrait::documentGroup)) {
            const std::size_t end = findGroupEnd(text_, index + 1, true);
            if (end != noGroupEnd) {
                edits_.cut(index, end + 1);
                return end + 1;
            }
        }
        groups_.push_back(groups_.back());
        if (opening.ignorable || meaning.is(WordTrait::hiddenGroup) || meaning.is(WordTrait::shownGroup)) {
            groups_.back().story = ++storyCount_;
            groups_.back().paragraph = index + 1;
        }
        return index + 1;
    }

    void openDocument(std::size_t index) {
        const Group around = groups_.back();
        documents_.push_back({around, groups_.size(), findCodePage(windowsLatin), index, edits_.size()});
        Group& group = groups_.emplace_back(around);
        group.font = Group{}.font;
        group.fallback = Group{}.fallback;
        edits_.reserve(index);
        // The braces of the document stay: its settings end there.
        const ControlWord word = readWord(text_, index + 1);
        documents_.back().isUnwrapped = word.letters.size() == 3;
        if (!documents_.back().isUnwrapped) return;
        // The document begins with the default number of fallback characters; it may rely on it.
        const std::size_t end = endWithBlank(text_, word);
        around.fallback == Group{}.fallback ? edits_.cut(word.begin, end) : edits_.replace(word.begin, end, u"\\uc1");
    }

    void closeGroup() {
        skipped_ = 0;
        if (groups_.size() > 1) {
            const Group closed = groups_.back();
            groups_.pop_back();
            if (closed.story == groups_.back().story) {
                groups_.back().paragraph = closed.paragraph;
                groups_.back().level.rowBegun = closed.level.rowBegun;
            }
        }
        if (documents_.empty() || documents_.back().depth != groups_.size()) return;
        const Document& document = documents_.back();
        if (document.isUnwrapped && document.endsParagraph) edits_.fill(document.edits, u"\\par");
        documents_.pop_back();
    }

    // Readers decode a font's text by its character set, whatever the document's is.
    bool fontHasOwnCharset(std::int32_t font) {
        if (!std::exchange(charsetsRead_, true)) readFontCharsets();
        return fontsWithCharset_.contains(font);
    }

    void readFontCharsets() {
        const std::size_t table = findText(text_, u"{\\fonttbl", host_, Comparison::binary);
        if (table == text_.npos) return;
        const std::size_t end = findGroupEnd(text_, table + 1, true);
        std::int32_t font = -1;
        RtfReader scanner(text_, table, end);
        while (scanner.nextWord()) {
            const ControlWord word = readWord(text_, scanner.position());
            if (word.letters == u"f") font = numberOf(word.number);
            const bool anyCharset = word.number == u"1" || word.number.empty();
            if (word.letters == u"fcharset" && !anyCharset) fontsWithCharset_.insert(font);
        }
    }

    std::u16string_view text_;
    std::size_t host_;
    const CodePage* hostPage_;
    std::int32_t hostFont_ = 0;  // its default
    TextEdits edits_;
    std::vector<Document> documents_;  // the open ones
    std::vector<Group> groups_{Group{}};
    std::uint32_t storyCount_ = 0;
    std::int32_t skipped_ = 0;  // remaining fallback units of a \u
    bool charsetsRead_ = false;
    std::set<std::int32_t> fontsWithCharset_;
};

}  // namespace

void Module1::UnwrapNestedDocuments(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument) return;
    TextEdits edits = options.tolerant ? DocumentUnwrapper(psText, host).edits() : unwrapPlainly(psText, host + 1);
    edits.apply(psText);
}

}  // namespace velmor
