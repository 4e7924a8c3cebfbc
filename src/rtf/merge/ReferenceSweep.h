#pragma once

#include <cstdint>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/DirectFormatting.h"
#include "rtf/merge/ListTables.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/StyleSheet.h"
#include "rtf/read/Module1.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The new numbers of a document's references. A null member leaves its references unchanged.
struct References {
    const NumberMap* fonts = nullptr;
    const NumberMap* colours = nullptr;
    StyleSheet* styles = nullptr;
    ListTables* lists = nullptr;
    std::int32_t defaultStyle = NumberMap::none;  // named in paragraphs without a style
    bool formats = false;                         // whether styles may bring formatting with them (DirectLook)
    // Tolerant merging only, for lifted documents: the font and the size that \plain means, and \widctlpar or
    // \nowidctlpar where \pard would go back to the other one in the host.
    std::int32_t defaultFont = NumberMap::none;
    std::int32_t defaultSize = NumberMap::none;
    std::u16string_view widowControl{};
};

// Renumbers a document's references in one pass.
//
// In exact merging the result for fonts and colours is that of replacing, for one number after the other, the
// word with its number and one of "\", " ", "}", "{" and carriage return after it. Such a replacement continues
// after the delimiter, so of adjacent equal references, \f1\f1\b, it takes every other one. Replaced references
// have a word in capitals until all numbers of the kind are replaced; all such words are turned back at the
// end, also those of the document itself. Tolerant merging takes every whole word; for styles and lists exact
// merging does too.
class ReferenceSweep {
public:
    explicit ReferenceSweep(const CleanOptions& options) noexcept : tolerant_(options.tolerant) {}

    // A new text; `edits` receives what changes.
    void begin(std::u16string_view text, const References& references, TextEdits& edits) {
        text_ = text;
        references_ = references;
        edits_ = &edits;
        usedDelimiter_ = text.size();
    }

    // Renumbers the words that begin in [begin, end), which is outside of an escape. Ranges ascend.
    void sweep(std::size_t begin, std::size_t end) {
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

private:
    // The words in capitals, in the order in which they are turned back. \CFPAT and \CBPAT are \cfPAT and \cbPAT by
    // then.
    static constexpr std::u16string_view colourCapitals[] = {
        u"CF", u"CB", u"CHCFPAT", u"CHCBPAT", u"PNCF", u"BRDRCF", u"CLCFPAT", u"CLCBPAT", u"AFC", u"HIGHLIGHT", u"ULC",
    };

    std::size_t take(std::size_t at) {
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

    const DirectLook* lookOf(StyleKind kind, std::u16string_view number) const {
        return references_.formats ? references_.styles->directLook(kind, number) : nullptr;
    }

    // Takes the words that format the text of a style as well: those of the look that goes are cut, and those of the
    // look that comes precede the others, which are the author's.
    std::size_t takeFormatted(const ControlWord& found, const DirectLook& look) {
        edits_->replaceByWordsVal(found.end, found.end, look.words);
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
                if (meaning == Word::plain) edits_->replaceByWordsVal(word.end, word.end, look.words);
            }
            end = word.end;
        }
        return end;
    }

    // The word's number in the merged document.
    std::u16string newNumber(const ControlWord& found) const {
        const WordMeaning meaning = meaningOf(found.letters);
        std::int32_t number = NumberMap::none;
        const bool isFont = meaning.is(WordTrait::font) || meaning.is(WordTrait::moreFont);
        const bool isColour = meaning.is(WordTrait::colour) || meaning.is(WordTrait::moreColour);
        if (isFont && references_.fonts != nullptr) number = references_.fonts->find(found.number);
        if (isColour && references_.colours != nullptr) number = references_.colours->find(found.number);
        if (meaning.word == Word::ls) number = references_.lists->numberOf(found.number);
        return number == NumberMap::none ? std::u16string(found.number) : decimal(number);
    }

    std::size_t takeCapitals(std::size_t at) {
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

    void takeNumber(const ControlWord& found, WordMeaning meaning, std::u16string_view letters) {
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

    void replacePlainly(const ControlWord& found, std::u16string_view letters, const NumberMap* numbers) {
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

    void replaceNumber(const ControlWord& found, std::int32_t number) {
        if (number == NumberMap::none) return;
        const std::u16string_view text = numbers_.of(number);
        if (text != found.number) edits_->replace(found.numberBegin(), found.end, text);
    }

    // Names after \pard or \plain what it goes back to.
    void nameDefaults(const ControlWord& found) {
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
    std::u16string defaultWord(const ControlWord& found, std::u16string_view letters, std::int32_t number) {
        if (number == NumberMap::none || namesItself(found.end, letters)) return {};
        return std::u16string(u"\\").append(letters).append(numbers_.of(number));
    }

    bool namesItself(std::size_t at, std::u16string_view letters) const {
        constexpr int fewWords = 40;
        WordRun run(text_, at);
        for (int i = 0; i < fewWords && run.next(); ++i) {
            const ControlWord& found = run.word();
            if (found.letters == letters && !found.number.empty()) return true;
            if (found.letters == u"par" || found.letters == u"pard") return false;
        }
        return false;
    }

    bool tolerant_;
    NumberTexts numbers_;
    std::u16string_view text_;
    References references_;
    TextEdits* edits_ = nullptr;
    std::size_t end_ = 0;  // of the range that is swept

    // The last exact replacement: its word, its old number, and its delimiter.
    std::u16string_view lastLetters_;
    std::u16string_view lastNumber_;
    std::size_t usedDelimiter_ = 0;
};

}  // namespace velmor
