#include "check/DiagnosticList.h"

#include <algorithm>
#include <utility>

namespace velmor {

namespace {

constexpr std::size_t longestContext = 40;

// The beginning of the text at an index, on one line.
std::u16string contextAt(std::u16string_view text, std::size_t index) {
    std::u16string context(text.substr(std::min(index, text.size()), longestContext));
    for (char16_t& unit : context) {
        if (unit < u' ') unit = u' ';
    }
    if (context.size() == longestContext && index + longestContext < text.size()) context += u"...";
    return context;
}

}  // namespace

bool DiagnosticList::isFull() {
    if (diagnostics_.size() < most) return false;
    ++more_;
    return true;
}

void DiagnosticList::add(DiagnosticCode code, const TemplateFile& file, const Story& story, TextRange range,
                         std::u16string message, std::u16string hint) {
    if (isFull()) return;
    const TextRange source = story.source(range.begin, range.end);
    diagnostics_.push_back({code, file.placeOf(source.begin), source.end - source.begin, std::move(message),
                            std::move(hint), story.placeOf(range.begin), contextAt(story.text(), range.begin),
                            file.includedFrom()});
}

void DiagnosticList::add(DiagnosticCode code, const TemplateFile& file, const TemplateTag& tag, std::u16string message,
                         std::u16string hint) {
    const std::size_t open = tag.span.open;
    const std::size_t end = tag.span.complete() ? tag.span.end() : open + openingMarker.size();
    add(code, file, file.storyOf(tag), {open, end}, std::move(message), std::move(hint));
}

void DiagnosticList::addInSource(DiagnosticCode code, const TemplateFile& file, TextRange range,
                                 std::u16string message) {
    if (isFull()) return;
    const auto [story, unit] = file.seenAt(range.begin);
    diagnostics_.push_back({code, file.placeOf(range.begin), std::max<std::size_t>(1, range.end - range.begin),
                            std::move(message), std::u16string(), story.placeOf(unit), contextAt(story.text(), unit),
                            file.includedFrom()});
}

}  // namespace velmor
