#include "check/VisibleText.h"

#include <algorithm>
#include <utility>

#include "core/Markup.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/WordTable.h"
#include "text/RtfStart.h"

namespace velmor {

// ---- A story

void Story::add(std::u16string_view text, TextRange source) {
    runs_.push_back({static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(source.begin),
                     static_cast<std::uint32_t>(source.end)});
    text_ += text;
}

bool Story::runHolds(std::size_t run, std::size_t index) const noexcept {
    return run < runs_.size() && runs_[run].at <= index &&
           index < (run + 1 < runs_.size() ? runs_[run + 1].at : text_.size());
}

TextRange Story::source(std::size_t index) const noexcept {
    if (!runHolds(lastRun_, index) && !runHolds(++lastRun_, index)) {
        const auto next = std::upper_bound(runs_.begin(), runs_.end(), index,
                                           [](std::size_t at, const Run& run) { return at < run.at; });
        lastRun_ = static_cast<std::size_t>(next - runs_.begin()) - 1;
    }
    const Run& run = runs_[lastRun_];
    const std::size_t begin = run.begin + (index - run.at);
    const bool isLast = !runHolds(lastRun_, index + 1);
    return {begin, isLast ? run.end : begin + 1};
}

std::size_t Story::unitAt(std::size_t source) const noexcept {
    const auto run = std::upper_bound(runs_.begin(), runs_.end(), source,
                                      [](std::size_t at, const Run& each) { return at < each.end; });
    if (run == runs_.end()) return text_.size();
    const std::size_t next = run + 1 == runs_.end() ? text_.size() : (run + 1)->at;
    const std::size_t offset = source > run->begin ? source - run->begin : 0;
    return std::min(run->at + offset, next - 1);
}

void Story::endParagraph(bool inTable) {
    Paragraph ended = next_;
    ended.end = text_.size();
    if (inTable) {
        if (next_.table == 0) ended.table = next_.table = ++tables_;
    } else {
        ended.table = next_.table = 0;
        next_.row = next_.cell = 1;
        ++next_.number;
    }
    paragraphs_.push_back(ended);
}

void Story::endCell() {
    endParagraph(true);
    ++next_.cell;
}

void Story::endRow() {
    ++next_.row;
    next_.cell = 1;
}

std::u16string Story::placeOf(std::size_t index) const {
    if (name_.empty()) return {};
    const auto found = std::upper_bound(paragraphs_.begin(), paragraphs_.end(), index,
                                        [](std::size_t at, const Paragraph& each) { return at < each.end; });
    const Paragraph& place = found == paragraphs_.end() ? next_ : *found;
    if (place.table == 0) return name_ + u", paragraph " + decimal(place.number);
    return name_ + u", table " + decimal(place.table) + u", row " + decimal(place.row) + u", cell " +
           decimal(place.cell);
}

// ---- Reading

namespace {

// What some words and bytes show.
struct ShownWord {
    std::u16string_view letters;
    char16_t unit;
};
constexpr ShownWord shownWords[] = {
    {u"lquote", u'\x2018'}, {u"rquote", u'\x2019'}, {u"ldblquote", u'\x201C'}, {u"rdblquote", u'\x201D'},
    {u"bullet", u'\x2022'}, {u"endash", u'\x2013'}, {u"emdash", u'\x2014'},    {u"tab", u'\t'},
    {u"line", u'\n'},       {u"emspace", u' '},     {u"enspace", u' '},        {u"qmspace", u' '},
};
constexpr char16_t object = u'\xFFFC';

std::u16string storyName(std::u16string_view letters) {
    if (letters.starts_with(u"header")) return u"header";
    if (letters.starts_with(u"footer")) return u"footer";
    if (letters == u"footnote") return u"footnote";
    if (letters == u"annotation") return u"comment";
    if (letters == u"shptxt" || letters == u"dptxbxtext") return u"text box";
    if (letters == u"shprslt") return u"drawing";
    if (letters == u"fldinst") return u"field code";
    return u"group \\" + std::u16string(letters);
}

constexpr bool isPlain(char16_t unit) noexcept {
    return unit != u'\\' && unit != u'\r' && unit != u'\n' && unit != u'\0';
}

// The end of the text at an index: a brace, a backslash, a line end or a NUL. Units are read in blocks, which compilers
// compare several at a time.
std::size_t textEnd(std::u16string_view source, std::size_t index) noexcept {
    constexpr std::size_t block = 16;
    const auto isText = [](char16_t unit) { return isPlain(unit) && unit != u'{' && unit != u'}'; };
    for (;;) {
        for (; index + block <= source.size(); index += block) {
            const char16_t* const units = source.data() + index;
            std::uint16_t found = 0;
            for (std::size_t i = 0; i < block; ++i) found |= static_cast<std::uint16_t>(!isText(units[i]));
            if (found != 0) break;
        }
        const std::size_t last = std::min(index + block, source.size());
        while (index < last && isText(source[index])) ++index;
        if (index < last || index == source.size()) return index;
    }
}

class StoryReader {
public:
    explicit StoryReader(std::u16string_view source)
        : source_(source), page_(findCodePage(codePageOfDocument(source, rtfStart.size()))), check_(source) {
        stories_.emplace_back(u"page text");
    }

    VisibleText read() {
        RtfReader reader(source_, 0, source_.size(), true);
        while (reader.next()) {
            takePlain(at_, reader.position());
            at_ = reader.position() + 1;
            if (reader.opens()) {
                open();
            } else if (reader.closes()) {
                close(reader.position());
            } else {
                takeWord(reader.word());
            }
            takeText();
            reader.goOnAt(at_);
        }
        takePlain(at_, source_.size());
        for (const Group& open : groups_) endHidden(open, source_.size());
        return {std::move(stories_), check_.faults()};
    }

private:
    struct Group {
        std::size_t story;
        std::int32_t fallback = 1;  // the characters after \uN that are not read
        bool inTable = false;
        bool hidden = false;
        bool isPicture = false;      // nothing in it is text
        std::size_t from = nowhere;  // the beginning of a hidden group that is not within another one
    };

    void open() {
        const std::size_t brace = at_ - 1;
        toSkip_ = 0;
        Group inner = group();
        const GroupOpening opening = readOpening(source_, brace);
        const WordMeaning meaning = meaningOf(opening.letters);
        check_.open(brace, meaning);
        inner.from = nowhere;
        inner.isPicture = inner.isPicture || opening.letters == u"pict" || opening.letters == u"objdata";
        const bool isApart = meaning.is(WordTrait::apartGroup);
        const bool isHidden =
            !isApart && (meaning.is(WordTrait::hiddenGroup) || (opening.ignorable && opening.letters != u"shppict"));
        if (!inner.isPicture && (isApart || isHidden)) {
            const bool isOutermost = isHidden && !inner.hidden;
            inner = {stories_.size(), 1, false, isHidden || inner.hidden, false, isOutermost ? brace : nowhere};
            stories_.emplace_back(storyName(opening.letters));
        }
        groups_.push_back(inner);
    }

    void close(std::size_t brace) {
        check_.close(brace);
        toSkip_ = 0;
        if (groups_.size() == 1) return;
        endHidden(group(), brace);
        groups_.pop_back();
    }

    // The stories of a hidden group without a "<" go.
    void endHidden(const Group& ended, std::size_t end) {
        if (ended.from == nowhere) return;
        if (angle_ < ended.from) angle_ = findAngle(source_, ended.from);
        if (angle_ >= end) stories_.erase(stories_.begin() + static_cast<std::ptrdiff_t>(ended.story), stories_.end());
    }

    void show(char16_t unit, TextRange source) {
        if (toSkip_ > 0) {
            --toSkip_;
            return story().extend(source.end);
        }
        story().add({&unit, 1}, source);
    }

    void endParagraph(Word word, TextRange source) {
        story().add(u"\n", source);
        if (word == Word::row || word == Word::nestrow) {
            if (word == Word::row) story().endRow();
        } else if (word == Word::cell) {
            story().endCell();
        } else {
            story().endParagraph(group().inTable || word == Word::nestcell);
        }
    }

    void takeWord(const ControlWord& word) {
        static const WordSet set(
            {WordTrait::shown, WordTrait::endsParagraph},
            {Word::intbl, Word::itap, Word::pard, Word::trowd, Word::cellx, Word::u, Word::uc, Word::bin});
        const TextRange range{word.begin, endWithBlank(source_, word)};
        at_ = range.end;
        if (!set.mayHold(source_, word.begin) && word.letters != u"enspace") return;
        at_ = std::max(range.end, skipBinary(source_, word.begin));
        const WordMeaning meaning = meaningOf(word.letters);
        check_.takeWord(word, meaning.word);
        if (group().isPicture) return;
        if (meaning.word == Word::u && !word.number.empty()) {
            toSkip_ = 0;
            show(static_cast<char16_t>(numberOf(word.number)), {word.begin, word.end});
            toSkip_ = group().fallback;
            return;
        }
        if (word.letters == u"uc") group().fallback = std::max(0, numberOf(word.number));
        if (meaning.word == Word::intbl) group().inTable = true;
        if (meaning.word == Word::pard) group().inTable = false;
        if (meaning.is(WordTrait::endsParagraph)) return endParagraph(meaning.word, range);
        for (const ShownWord& each : shownWords) {
            if (each.letters == word.letters) return show(each.unit, range);
        }
        if (meaning.is(WordTrait::shown)) show(object, range);
    }

    // Text that is written as it is shown, up to the next brace or backslash.
    void takeText() {
        if (toSkip_ > 0 || group().isPicture) return;
        while (at_ < source_.size()) {
            const std::size_t end = textEnd(source_, at_);
            if (end > at_) addAsWritten(at_, end);
            at_ = end;
            while (at_ < source_.size() && source_[at_] != u'\\' && !isPlain(source_[at_])) ++at_;
            if (at_ == end) return;
        }
    }

    void addAsWritten(std::size_t begin, std::size_t end) {
        story().add(source_.substr(begin, end - begin), {begin, end});
    }

    // Text without braces and words; symbols are in it.
    void takePlain(std::size_t begin, std::size_t end) {
        if (group().isPicture) return;
        for (std::size_t i = begin; i < end;) {
            if (source_[i] == u'\\') {
                i = takeSymbol(i);
            } else if (!isPlain(source_[i])) {
                ++i;
            } else if (toSkip_ > 0) {
                show(source_[i], {i, i + 1});
                ++i;
            } else {
                const std::size_t first = i;
                while (i < end && isPlain(source_[i])) ++i;
                addAsWritten(first, i);
            }
        }
    }

    std::size_t takeSymbol(std::size_t index) {
        const std::size_t end = std::min(index + 2, source_.size());
        const char16_t symbol = end == index + 2 ? source_[index + 1] : u'\0';
        if (symbol == u'\'') {
            const std::int32_t byte = byteAt(source_, index);
            const std::size_t after = std::min(index + 4, source_.size());
            if (byte < 0) return end;
            show(page_ != nullptr ? page_->meaning(static_cast<std::uint8_t>(byte)) : u'\xFFFD', {index, after});
            return after;
        }
        if (symbol == u'\r' || symbol == u'\n') {
            endParagraph(Word::par, {index, end});
        } else if (symbol == u'~') {
            show(u'\xA0', {index, end});
        } else if (symbol == u'_') {
            show(u'\x2011', {index, end});
        } else if (isShownSymbol(symbol)) {
            show(symbol, {index, end});
        }
        return end;
    }

    Group& group() { return groups_.back(); }
    Story& story() { return stories_[group().story]; }

    std::u16string_view source_;
    const CodePage* page_;  // null for one of several bytes a character
    RtfCheck check_;
    std::vector<Story> stories_;
    std::vector<Group> groups_{Group{0}};
    std::size_t at_ = 0;       // how far the source is read
    std::int32_t toSkip_ = 0;  // characters that stand in for a \uN
    std::size_t angle_ = 0;    // the first "<" after what was asked for last
};

VisibleText plainText(std::u16string_view source) {
    VisibleText text;
    text.stories.emplace_back(u"").add(source, {0, source.size()});
    return text;
}

}  // namespace

VisibleText readVisibleText(std::u16string_view source) {
    const bool isRtf = source.size() >= rtfStart.size() && documentStandsAt(source, 0);
    return isRtf ? StoryReader(source).read() : plainText(source);
}

}  // namespace velmor
