#include "rtf/merge/ReferenceSweep.h"

#include "rtf/merge/DirectFormatting.h"
#include "rtf/read/Module1.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

namespace {

// The words in capitals, in the order in which they are turned back. \CFPAT and \CBPAT are \cfPAT and \cbPAT by
// then.
constexpr std::u16string_view colourCapitals[] = {
    u"CF", u"CB", u"CHCFPAT", u"CHCBPAT", u"PNCF", u"BRDRCF", u"CLCFPAT", u"CLCBPAT", u"AFC", u"HIGHLIGHT", u"ULC",
};

}  // namespace

void ReferenceSweep::begin(std::u16string_view text, const References& references, TextEdits& edits) {
    text_ = text;
    references_ = references;
    edits_ = &edits;
    usedDelimiter_ = text.size();
}

void ReferenceSweep::sweep(std::size_t begin, std::size_t end) {
    static const WordSet words(
        {WordTrait::font, WordTrait::moreFont, WordTrait::colour, WordTrait::moreColour},
        {Word::bin, Word::cs, Word::ds, Word::ls, Word::pard, Word::plain, Word::s, Word::ts, Word::yts});
    end_ = end;
    for (std::size_t at = begin; at + 1 < end;) {
        if (text_[at] != u'\\') {
            ++at;
        } else {
            at = words.mayHold(text_, at) ? take(at) : at + 2;
        }
    }
}

std::size_t ReferenceSweep::take(std::size_t at) {
    if (text_[at + 1] < u'a') return takeCapitals(at);
    const ControlWord found = readWord(text_, at);
    const WordMeaning meaning = meaningOf(found.letters);
    switch (meaning.word) {
        case Word::bin:
            return tolerant_ ? skipEscape(text_, at) : found.end;
        case Word::plain:
        case Word::pard:
            nameDefaults(found);
            break;
        default:
            if (!found.number.empty()) takeNumber(found, meaning, found.letters);
    }
    const DirectLook* look = nullptr;
    if (meaning.word == Word::pard) look = lookOf(StyleKind::paragraph, u"0");
    if (look != nullptr && namesItself(found.end, u"s")) look = nullptr;
    if (const auto style = styleKindOf(meaning.word)) look = lookOf(*style, found.number);
    return look == nullptr ? found.end : takeFormatted(found, *look);
}

const DirectLook* ReferenceSweep::lookOf(StyleKind kind, std::u16string_view number) const {
    return references_.formats ? references_.styles->directLook(kind, number) : nullptr;
}

// Takes the words that format the text of a style as well: those of the look that goes are cut, and those of the look
// that comes precede the others, which are the author's.
std::size_t ReferenceSweep::takeFormatted(const ControlWord& found, const DirectLook& look) {
    insertWords(found.end, look.words);
    WordRun run(text_, found.end);
    std::size_t end = found.end;
    while (run.next() && run.word().begin < end_) {
        const ControlWord word = run.word();
        const Word meaning = meaningOf(word.letters).word;
        if (word.letters == u"par" || meaning == Word::pard || meaning == Word::bin || styleKindOf(meaning)) break;
        const auto said = findWord(look.replaced, word.letters);
        if (said && said->number == newNumber(word)) {
            edits_->cut(word.begin, endWithBlank(text_, word));
        } else {
            take(word.begin);
            if (meaning == Word::plain) insertWords(word.end, look.words);
        }
        end = word.end;
    }
    return end;
}

// After a word. A blank that ended it ends the last one of `words` then.
void ReferenceSweep::insertWords(std::size_t at, std::u16string_view words) {
    if (standsAt(text_, at, u" ")) {
        edits_->replaceVal(at, at, std::u16string(words));
    } else {
        edits_->replaceApartVal(at, at, std::u16string(words));
    }
}

// The word's number in the merged document.
std::u16string ReferenceSweep::newNumber(const ControlWord& found) const {
    const WordMeaning meaning = meaningOf(found.letters);
    std::int32_t number = NumberMap::none;
    const bool isFont = meaning.is(WordTrait::font) || meaning.is(WordTrait::moreFont);
    const bool isColour = meaning.is(WordTrait::colour) || meaning.is(WordTrait::moreColour);
    if (isFont && references_.fonts != nullptr) number = references_.fonts->find(found.number);
    if (isColour && references_.colours != nullptr) number = references_.colours->find(found.number);
    if (meaning.word == Word::ls) number = references_.lists->numberOf(found.number);
    return number == NumberMap::none ? std::u16string(found.number) : decimal(number);
}

std::size_t ReferenceSweep::takeCapitals(std::size_t at) {
    const std::size_t letters = at + 1;
    if (text_[letters] == u'F' && references_.fonts != nullptr) {
        edits_->replace(letters, letters + 1, u"f");
        return letters + 1;
    }
    if (references_.colours == nullptr) return letters + 1;
    for (const std::u16string_view capitals : colourCapitals) {
        if (!standsAt(text_, letters, capitals)) continue;
        const std::size_t end = letters + capitals.size();
        edits_->replaceVal(letters, end, lowerCase(capitals));
        // \CFpat becomes \cfpat before the numbers of that word are replaced.
        const std::u16string_view pattern = capitals == u"CF" ? u"cfpat" : u"cbpat";
        if (capitals.size() == 2 && standsAt(text_, end, u"pat")) {
            ControlWord found = readWord(text_, at);
            if (found.letters.size() == pattern.size()) takeNumber(found, meaningOf(pattern), pattern);
        }
        return end;
    }
    return letters + 1;
}

void ReferenceSweep::takeNumber(const ControlWord& found, WordMeaning meaning, std::u16string_view letters) {
    const auto isReference = [&](WordTrait always, WordTrait tolerant) {
        return meaning.is(always) || (tolerant_ && meaning.is(tolerant));
    };
    if (isReference(WordTrait::font, WordTrait::moreFont)) replacePlainly(found, letters, references_.fonts);
    if (isReference(WordTrait::colour, WordTrait::moreColour)) replacePlainly(found, letters, references_.colours);
    const auto style = meaning.word == Word::yts ? StyleKind::table : styleKindOf(meaning.word);
    if (style && references_.styles != nullptr) {
        replaceNumber(found, references_.styles->numberOf(*style, found.number));
    } else if (meaning.word == Word::ls && references_.lists != nullptr) {
        replaceNumber(found, references_.lists->numberOf(found.number));
    }
}

void ReferenceSweep::replacePlainly(const ControlWord& found, std::u16string_view letters, const NumberMap* numbers) {
    if (numbers == nullptr) return;
    const std::int32_t number = numbers->find(found.number);
    if (number == NumberMap::none) return;
    if (!tolerant_) {
        if (found.end >= text_.size() || !Module1::isDelimiter(text_[found.end])) return;
        const bool usesBackslash = text_[found.end] == u'\\';
        const bool isAdjacent = usesBackslash && usedDelimiter_ == found.begin;
        if (isAdjacent && lastLetters_ == letters && lastNumber_ == found.number) return;
        if (usesBackslash) {
            usedDelimiter_ = found.end;
            lastLetters_ = letters;
            lastNumber_ = found.number;
        }
    }
    replaceNumber(found, number);
}

void ReferenceSweep::replaceNumber(const ControlWord& found, std::int32_t number) {
    if (number == NumberMap::none) return;
    const std::u16string_view text = numbers_.of(number);
    if (text != found.number) edits_->replace(found.numberBegin(), found.end, text);
}

// Names after \pard or \plain what it goes back to.
void ReferenceSweep::nameDefaults(const ControlWord& found) {
    std::u16string words;
    if (found.letters == u"pard") {
        words = defaultWord(found, u"s", references_.defaultStyle);
        words += references_.widowControl;
    } else {
        words = defaultWord(found, u"f", references_.defaultFont);
        words += defaultWord(found, u"fs", references_.defaultSize);
    }
    if (!words.empty()) edits_->replaceVal(found.end, found.end, std::move(words));
}

// Nothing when the words that follow name a number.
std::u16string ReferenceSweep::defaultWord(const ControlWord& found, std::u16string_view letters, std::int32_t number) {
    if (number == NumberMap::none || namesItself(found.end, letters)) return {};
    return std::u16string(u"\\").append(letters).append(numbers_.of(number));
}

bool ReferenceSweep::namesItself(std::size_t at, std::u16string_view letters) const {
    constexpr int fewWords = 40;
    WordRun run(text_, at);
    for (int i = 0; i < fewWords && run.next(); ++i) {
        const ControlWord& found = run.word();
        if (found.letters == letters && !found.number.empty()) return true;
        if (found.letters == u"par" || found.letters == u"pard") return false;
    }
    return false;
}

}  // namespace velmor
