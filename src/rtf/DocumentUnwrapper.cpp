#include "rtf/DocumentUnwrapper.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "rtf/BraceScanner.h"
#include "rtf/EmbeddedDocuments.h"
#include "rtf/RtfScanner.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// Words that speak for a whole document, in ascending order.
constexpr std::u16string_view headerWords[] = {
    u"adeff",     u"adeflang", u"ansi",    u"ansicpg",   u"deff",      u"deflang",   u"deflangfe", u"gutter",
    u"landscape", u"mac",      u"margb",   u"margl",     u"margr",     u"margt",     u"paperh",    u"paperw",
    u"pc",        u"pca",      u"stshfbi", u"stshfdbch", u"stshfhich", u"stshfloch",
};

constexpr std::size_t noChange = std::u16string_view::npos;

}  // namespace

DocumentUnwrapper::DocumentUnwrapper(std::u16string_view text, std::size_t host, bool mergeMode)
    : text_(text),
      host_(host),
      mergeMode_(mergeMode),
      hostPage_(findCodePage(codePageOfDocument(text, hostHeaderStart(text, host)))) {
    for (std::size_t at = host + 1; at < text_.size();) {
        const char16_t unit = text_[at];
        if (unit == u'\\') {
            at = takeBackslash(at);
            continue;
        }
        if (unit == u'{') {
            openGroup(at);
        } else if (unit == u'}') {
            closeGroup(at);
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
        Document& document = documents_.back();
        document.breaksSection = document.breaksSection || word.letters == u"sect";
        if (document.depth + 1 == groups_.size()) takeHeaderWord(word);
    }
}

void DocumentUnwrapper::takeHeaderWord(const ControlWord& word) {
    if (!std::binary_search(std::begin(headerWords), std::end(headerWords), word.letters)) return;
    if (const std::int32_t page = codePageNamedBy(word)) documents_.back().page = findCodePage(page);
    changes_.push_back({word.begin, endWithBlank(text_, word), documents_.back().number, {}});
}

void DocumentUnwrapper::openGroup(std::size_t index) {
    skipped_ = 0;
    const bool document = documentStandsAt(text_, index);
    const std::int32_t fallback = groups_.back().fallback;
    groups_.push_back(document ? Group{} : groups_.back());
    if (!document) return;
    // The brace stays, and so does its partner: what the document sets ends there.
    const ControlWord word = readWord(text_, index + 1);
    const bool named = word.letters.size() == 3;
    documents_.push_back(
        {documentCount_, groups_.size() - 1, findCodePage(windowsLatin), index, named ? changes_.size() : noChange});
    if (named) {
        // What stands for a \u is counted anew: the document may rely on it.
        const std::u16string_view counted = fallback == Group{}.fallback ? u"" : u"\\uc1";
        changes_.push_back({word.begin, endWithBlank(text_, word), documentCount_, std::u16string(counted)});
    }
    ++documentCount_;
}

void DocumentUnwrapper::closeGroup(std::size_t index) {
    skipped_ = 0;
    if (groups_.size() > 1) groups_.pop_back();
    if (documents_.empty() || documents_.back().depth != groups_.size()) return;
    const Document& document = documents_.back();
    if (document.opening != noChange && endsSection(index + 1, document.breaksSection)) {
        changes_[document.opening].begin = document.begin;
        changes_.push_back({index, index + 1, document.number, {}});
    }
    documents_.pop_back();
}

// Whether no text stands between a document and the end of its last section: the host's, or in merge
// mode a section break.
bool DocumentUnwrapper::endsSection(std::size_t behind, bool breaksSection) const noexcept {
    while (mergeMode_ && (behind = skipWhiteSpace(text_, behind)) < text_.size() && text_[behind] == u'\\') {
        const ControlWord word = readWord(text_, behind);
        if (word.letters.empty()) return false;
        if (word.letters == u"sect") return true;
        behind = word.end;
    }
    return (mergeMode_ || breaksSection) && groups_.size() == 1 && standsAt(text_, skipWhiteSpace(text_, behind), u"}");
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
    RtfScanner scanner(text_, table, end);
    while (scanner.nextWord()) {
        const ControlWord word = readWord(text_, scanner.position());
        if (word.letters == u"f") font = numberOf(word.number);
        const bool anyCharset = word.number == u"1" || word.number.empty();
        if (word.letters == u"fcharset" && !anyCharset) fontsWithCharset_.push_back(font);
    }
    std::sort(fontsWithCharset_.begin(), fontsWithCharset_.end());
}

}  // namespace velmor
