#include "rtf/merge/ReferenceSweep.h"

#include "rtf/read/Module1.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

enum class ReferenceSweep::Kind : std::uint8_t {
    font,
    otherFont,    // of tolerant merging
    defaultFont,  // \deff
    plain,
    colour,
    otherColour,  // of tolerant merging
    paragraphStyle,
    characterStyle,
    sectionStyle,
    tableStyle,
    list,
    paragraphDefaults,
    binary
};

struct ReferenceSweep::Word {
    std::u16string_view letters;
    Kind kind;
};

// By first letter.
const ReferenceSweep::Word ReferenceSweep::words[] = {
    {u"af", Kind::otherFont},
    {u"afc", Kind::colour},
    {u"adeff", Kind::otherFont},
    {u"bin", Kind::binary},
    {u"brdrcf", Kind::colour},
    {u"cf", Kind::colour},
    {u"cb", Kind::colour},
    {u"cs", Kind::characterStyle},
    {u"cfpat", Kind::colour},
    {u"cbpat", Kind::colour},
    {u"clcfpat", Kind::colour},
    {u"clcbpat", Kind::colour},
    {u"clcfpatraw", Kind::otherColour},
    {u"clcbpatraw", Kind::otherColour},
    {u"chcfpat", Kind::colour},
    {u"chcbpat", Kind::colour},
    {u"deff", Kind::defaultFont},
    {u"ds", Kind::sectionStyle},
    {u"f", Kind::font},
    {u"highlight", Kind::colour},
    {u"ls", Kind::list},
    {u"mmathFont", Kind::otherFont},
    {u"pard", Kind::paragraphDefaults},
    {u"plain", Kind::plain},
    {u"pncf", Kind::colour},
    {u"pnf", Kind::otherFont},
    {u"s", Kind::paragraphStyle},
    {u"stshfdbch", Kind::otherFont},
    {u"stshfloch", Kind::otherFont},
    {u"stshfhich", Kind::otherFont},
    {u"stshfbi", Kind::otherFont},
    {u"trcfpat", Kind::otherColour},
    {u"trcbpat", Kind::otherColour},
    {u"ts", Kind::tableStyle},
    {u"tscellcfpat", Kind::otherColour},
    {u"tscellcbpat", Kind::otherColour},
    {u"ulc", Kind::colour},
    {u"yts", Kind::tableStyle},
};

namespace {

constexpr std::size_t longestWord = 11;

// The words in capitals, in the order in which they are turned back. \CFPAT and \CBPAT have become \cfPAT and
// \cbPAT before their turn comes.
constexpr std::u16string_view colourCapitals[] = {
    u"CF", u"CB", u"CHCFPAT", u"CHCBPAT", u"PNCF", u"BRDRCF", u"CLCFPAT", u"CLCBPAT", u"AFC", u"HIGHLIGHT", u"ULC",
};

// Where the words of each first letter stand in a table that is sorted so.
struct WordSpan {
    std::uint8_t begin = 0;
    std::uint8_t end = 0;
};

}  // namespace

const ReferenceSweep::Word* ReferenceSweep::find(std::u16string_view letters) noexcept {
    static const auto spans = [] {
        std::array<WordSpan, 128> result{};
        for (std::size_t i = 0; i < std::size(words); ++i) {
            WordSpan& span = result[words[i].letters[0]];
            if (span.end == 0) span.begin = static_cast<std::uint8_t>(i);
            span.end = static_cast<std::uint8_t>(i + 1);
        }
        return result;
    }();
    if (letters.size() > longestWord) return nullptr;
    const WordSpan span = spans[letters[0]];
    for (std::size_t i = span.begin; i < span.end; ++i) {
        if (words[i].letters == letters) return &words[i];
    }
    return nullptr;
}

void ReferenceSweep::begin(std::u16string_view text, const References& references, TextEdits& edits) {
    text_ = text;
    references_ = references;
    edits_ = &edits;
    usedDelimiter_ = text.size();
    watched_ = {};
    if (references.fonts != nullptr) {
        watch(u'f');
        watch(u'F');
    }
    if (references.fonts != nullptr && tolerant_) {
        for (const char16_t first : {u'a', u'd', u'm', u's', u'p'}) watch(first);
    }
    if (references.colours != nullptr) {
        for (const char16_t first : std::u16string_view(u"acbhupACBHUP")) watch(first);
        if (tolerant_) watch(u't');
    }
    if (references.styles != nullptr) {
        for (const char16_t first : std::u16string_view(u"scdty")) watch(first);
    }
    if (references.lists != nullptr) watch(u'l');
    if (references.defaultStyle != NumberMap::none) watch(u'p');
    if (tolerant_) watch(u'b');
}

void ReferenceSweep::sweep(std::size_t begin, std::size_t end) {
    for (std::size_t at = begin; at + 1 < end;) {
        if (text_[at] != u'\\') {
            ++at;
            continue;
        }
        const char16_t first = text_[at + 1];
        at = first < watched_.size() && watched_[first] ? take(at) : at + 2;
    }
}

std::size_t ReferenceSweep::take(std::size_t at) {
    if (text_[at + 1] < u'a') return takeCapitals(at);
    const ControlWord found = readWord(text_, at);
    const Word* const word = find(found.letters);
    if (word == nullptr) return found.end;
    switch (word->kind) {
        case Kind::binary:
            return tolerant_ ? skipEscape(text_, at) : found.end;
        case Kind::plain:
            if (tolerant_) nameDefault(found, u"f", references_.defaultFont);
            break;
        case Kind::paragraphDefaults:
            nameDefault(found, u"s", references_.defaultStyle);
            break;
        default:
            if (!found.number.empty()) takeNumber(found, word->kind, word->letters);
    }
    return found.end;
}

std::size_t ReferenceSweep::takeCapitals(std::size_t at) {
    const std::size_t letters = at + 1;
    if (text_[letters] == u'F') {
        edits_->replace(letters, letters + 1, u"f");
        return letters + 1;
    }
    if (references_.colours == nullptr) return letters + 1;
    for (const std::u16string_view capitals : colourCapitals) {
        if (!standsAt(text_, letters, capitals)) continue;
        const std::size_t end = letters + capitals.size();
        edits_->replaceVal(letters, end, lowerCase(capitals));
        // \CFpat has become \cfpat before the numbers of that word's turn come.
        const std::u16string_view pattern = capitals == u"CF" ? u"cfpat" : u"cbpat";
        if (capitals.size() == 2 && standsAt(text_, end, u"pat")) {
            ControlWord found = readWord(text_, at);
            if (found.letters.size() == pattern.size()) takeNumber(found, Kind::colour, pattern);
        }
        return end;
    }
    return letters + 1;
}

void ReferenceSweep::takeNumber(const ControlWord& found, Kind kind, std::u16string_view letters) {
    const auto replaceStyle = [&](StyleKind style) {
        if (references_.styles != nullptr) replaceNumber(found, references_.styles->numberOf(style, found.number));
    };
    switch (kind) {
        case Kind::font:
            return replacePlainly(found, letters, references_.fonts);
        case Kind::colour:
            return replacePlainly(found, letters, references_.colours);
        case Kind::otherColour:
            if (tolerant_) replacePlainly(found, letters, references_.colours);
            return;
        case Kind::otherFont:
        case Kind::defaultFont:
            if (tolerant_) replacePlainly(found, letters, references_.fonts);
            return;
        case Kind::paragraphStyle:
            return replaceStyle(StyleKind::paragraph);
        case Kind::characterStyle:
            return replaceStyle(StyleKind::character);
        case Kind::sectionStyle:
            return replaceStyle(StyleKind::section);
        case Kind::tableStyle:
            return replaceStyle(StyleKind::table);
        case Kind::list:
            if (references_.lists != nullptr) replaceNumber(found, references_.lists->numberOf(found.number));
            return;
        default:
            return;
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

// Names the number behind the word, unless the words that follow do.
void ReferenceSweep::nameDefault(const ControlWord& found, std::u16string_view letters, std::int32_t number) {
    if (number == NumberMap::none || namesItself(found.end, letters)) return;
    std::u16string word(u"\\");
    edits_->replaceVal(found.end, found.end, word.append(letters).append(numbers_.of(number)));
}

bool ReferenceSweep::namesItself(std::size_t at, std::u16string_view letters) const {
    constexpr int fewWords = 40;
    for (int i = 0; i < fewWords && at < text_.size(); ++i) {
        at = skipWhiteSpace(text_, at);
        if (at >= text_.size() || text_[at] != u'\\') return false;
        const ControlWord found = readWord(text_, at);
        if (found.letters == letters && !found.number.empty()) return true;
        if (found.letters.empty() || found.letters == u"par" || found.letters == u"pard") return false;
        at = found.end;
    }
    return false;
}

}  // namespace velmor
