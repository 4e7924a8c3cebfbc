#include "check/Annotation.h"

#include <algorithm>

#include "rtf/edit/ProtectRTF.h"
#include "rtf/edit/TextEdits.h"

namespace velmor {

namespace {

// An opening marker in a comment would be read as a tag.
std::u16string withoutMarkers(const std::u16string& text) {
    std::u16string result;
    for (const char16_t unit : text) unit == u'<' ? result += u"\\'3c" : result += unit;
    return result;
}

std::u16string commentOf(const Diagnostic& diagnostic) {
    std::u16string text = codeText(diagnostic.code) + u": " + messageText(diagnostic);
    if (!diagnostic.includedFrom.empty()) text = placeText(diagnostic.place) + u": " + text;
    ProtectRTFCode(text);
    return u"{\\*\\atnid velmor}{\\*\\atnauthor velmor}\\chatn{\\*\\annotation\\pard\\plain " + withoutMarkers(text) +
           u"}";
}

class Annotator {
public:
    explicit Annotator(const TemplateFile& file)
        : file_(file),
          page_(file.stories().front()),
          end_(std::min(findGroupEnd(file.source(), 1, true), file.source().size())),
          units_(page_.unitAt(end_)) {
        const std::vector<TemplateTag>& tags = file.tags();
        for (std::size_t index = 0; index < tags.size() && tags[index].story == 0; index = tags[index].next) {
            if (tags[index].span.complete()) spans_.push_back(tags[index].span);
        }
    }

    std::u16string run(const std::vector<Diagnostic>& diagnostics) {
        TextEdits edits;
        for (const Diagnostic& each : diagnostics) {
            const SourcePlace& place = each.includedFrom.empty() ? each.place : each.includedFrom.back();
            if (place.file != file_.name()) continue;
            edits.insert(placeFor(place.offset - 1), edits.keep(commentOf(each)));
        }
        std::u16string text = file_.source();
        edits.apply(text);
        return text;
    }

private:
    // Of the source, for a comment on what lies at an index of it.
    std::size_t placeFor(std::size_t index) const {
        const std::size_t unit = withoutLineEnds(std::min(page_.unitAt(index), units_));
        if (unit == units_) return end_;
        const auto after = std::upper_bound(spans_.begin(), spans_.end(), unit,
                                            [](std::size_t at, const TagSpan& span) { return at < span.open; });
        const bool isInTag = after != spans_.begin() && unit < (after - 1)->end();
        return page_.source(isInTag ? (after - 1)->open : unit).begin;
    }

    // The next character at or after the unit that is no end of a paragraph or cell; else the last one before it; the
    // number of units when there is none.
    std::size_t withoutLineEnds(std::size_t unit) const {
        const std::u16string_view text = std::u16string_view(page_.text()).substr(0, units_);
        const std::size_t next = text.find_first_not_of(u'\n', unit);
        return std::min(next != text.npos ? next : text.find_last_not_of(u'\n', unit), units_);
    }

    const TemplateFile& file_;
    const Story& page_;
    const std::size_t end_;       // of the document: its last brace
    std::size_t units_;           // of the page text within the document
    std::vector<TagSpan> spans_;  // of the complete tags of the page text that are in no other one
};

}  // namespace

std::u16string annotated(const TemplateFile& file, const std::vector<Diagnostic>& diagnostics) {
    return Annotator(file).run(diagnostics);
}

}  // namespace velmor
