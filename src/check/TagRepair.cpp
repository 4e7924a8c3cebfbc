#include "check/TagRepair.h"

#include <optional>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/WordTable.h"
#include "text/Encoding.h"

namespace velmor {

namespace {

// The straight form of a quote; another character is its own.
char16_t straight(char16_t unit) noexcept {
    if (unit >= u'\x2018' && unit <= u'\x201B') return u'\'';
    return unit >= u'\x201C' && unit <= u'\x201F' ? u'"' : unit;
}

class TagRepair {
public:
    explicit TagRepair(const TemplateFile& file)
        : file_(file),
          isRtf_(documentStandsAt(file.source(), 0)),
          end_(isRtf_ ? findGroupEnd(file.source(), 1, true) : file.source().size()) {}

    RepairedTemplate run() {
        const std::vector<TemplateTag>& tags = file_.tags();
        for (std::size_t index = 0; index < tags.size(); index = tags[index].next) {
            if (tags[index].span.complete()) repair(tags[index]);
        }
        result_.source = file_.source();
        edits_.apply(result_.source);
        return std::move(result_);
    }

private:
    void repair(const TemplateTag& tag) {
        const Story& story = file_.storyOf(tag);
        const TextRange source = story.source(tag.span.open, tag.span.end());
        std::optional<std::u16string> text = repaired(story, tag.span.open, tag.span.end());
        const bool leavesDocument = source.begin < end_ && end_ < source.end;
        if (!text || leavesDocument) {
            ++result_.left;
        } else if (*text != source.of(file_.source())) {
            ++result_.repaired;
            edits_.replaceVal(source.begin, source.end, *std::move(text));
        }
    }

    std::optional<std::u16string> repaired(const Story& story, std::size_t begin, std::size_t end) const {
        std::u16string moved;
        std::u16string text;
        for (std::size_t at = begin; at < end; ++at) {
            const TextRange source = story.source(at);
            const char16_t unit = straight(story.text()[at]);
            const TextRange gap{at == begin ? source.begin : story.source(at - 1).end, source.begin};
            if (!canBeMoved(gap.of(file_.source())) || !canBeWritten(unit, source)) return std::nullopt;
            for (const char16_t each : gap.of(file_.source())) {
                if (each != u'\r' && each != u'\n') moved += each;
            }
            text += unit;
        }
        return moved + text;
    }

    // Words that set up characters, and groups of them. A story leaves out what shows nothing.
    bool canBeMoved(std::u16string_view gap) const {
        RtfReader reader(gap, 0, gap.size(), true);
        while (reader.nextWord()) {
            const WordMeaning word = meaningOf(reader.word().letters);
            const bool isFixed = word.is(WordTrait::shown) || word.is(WordTrait::endsParagraph) ||
                                 word.is(WordTrait::section) || word.is(WordTrait::row) ||
                                 word.is(WordTrait::documentWord) || word.word == Word::bin;
            if (isFixed) return false;
        }
        return true;
    }

    bool canBeWritten(char16_t unit, TextRange source) const {
        if (!isRtf_ || source.end - source.begin == 1) return true;
        return unit >= u' ' && unit != u'\\' && unit != u'{' && unit != u'}' && unit != u'\xFFFC' &&
               fromAnsi(toAnsi({&unit, 1})) == std::u16string_view(&unit, 1);
    }

    const TemplateFile& file_;
    const bool isRtf_;
    const std::size_t end_;  // of the document: its last brace
    TextEdits edits_;
    RepairedTemplate result_;
};

}  // namespace

RepairedTemplate repairTags(const TemplateFile& file) {
    return TagRepair(file).run();
}

}  // namespace velmor
