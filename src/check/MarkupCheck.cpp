#include "check/MarkupCheck.h"

#include <algorithm>
#include <string>

#include "check/OwnText.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::u16string_view curlyQuotes = u"\x2018\x2019\x201A\x201B\x201C\x201D\x201E\x201F";

// Texts that resemble a marker.
struct Resemblance {
    std::u16string_view text;
    std::u16string_view hint;
};
constexpr std::u16string_view openingHint = u"the opening marker is <KV:";
constexpr std::u16string_view closingHint = u"the closing marker is </KV>";
constexpr Resemblance resemblances[] = {
    {u"<KV>", closingHint},   {u"<\\KV>", closingHint},      {u"</KV:", closingHint}, {u"</KV >", closingHint},
    {u"</ KV>", closingHint}, {u"&lt;/KV&gt;", closingHint}, {u"<KV;", openingHint},  {u"< KV:", openingHint},
    {u"<KV :", openingHint},  {u"&lt;KV:", openingHint},
};

// What the source holds instead of a tag's characters, and between them.
struct SourceFaults {
    bool isCut = false;      // RTF words or groups
    bool isBroken = false;   // line ends
    bool isCurly = false;    // curly quotes
    bool isEscaped = false;  // other characters that are not written as themselves
};

// Follows a tag's elements: names, and values that may be in quotes.
class ElementWalk {
public:
    explicit ElementWalk(std::u16string_view text) : text_(text) {}

    void take(std::size_t at) {
        const char16_t unit = text_[at];
        if (part_ == Part::handler) {
            if (unit == handlerSeparator) part_ = Part::command;
        } else if (part_ == Part::quoted) {
            if (unit == elementSeparator && text_[at - 1] == u'"') part_ = Part::name;
        } else if (part_ != Part::value && unit == u'=') {
            part_ = at + 1 < text_.size() && text_[at + 1] == u'"' ? Part::quoted : Part::value;
        } else if (unit == elementSeparator && !isDrive(at)) {
            part_ = Part::name;
        }
    }
    bool isInName() const noexcept { return part_ == Part::name; }

private:
    enum class Part { handler, command, name, value, quoted };

    // "C:\folder" and "C:/folder" are values.
    bool isDrive(std::size_t at) const noexcept {
        const char16_t after = at + 1 < text_.size() ? text_[at + 1] : u' ';
        return part_ == Part::value && (after == u'\\' || after == u'/') && isLetter(text_[at - 1]) &&
               text_[at - 2] == u'=';
    }

    std::u16string_view text_;
    Part part_ = Part::handler;
};

class MarkupCheck {
public:
    MarkupCheck(const TemplateFile& file, DiagnosticList& found)
        : file_(file), found_(found), isSound_(file.tags().size(), true) {}

    std::vector<bool> run() {
        for (const Story& story : file_.stories()) checkMarkers(story);
        for (std::size_t index = 0; index < file_.tags().size(); ++index) checkTag(index);
        return std::move(isSound_);
    }

private:
    // Closing markers beyond the opening ones, and what resembles a marker.
    void checkMarkers(const Story& story) {
        const std::u16string_view text = story.text();
        std::size_t depth = 0;
        std::size_t angle = findAngle(text, 0);
        std::size_t ampersand = std::min(text.find(u'&'), text.size());
        for (std::size_t at; (at = std::min(angle, ampersand)) < text.size();) {
            if (at == angle) {
                angle = findAngle(text, at + 1);
            } else {
                ampersand = std::min(text.find(u'&', at + 1), text.size());
            }
            const MarkerPlace place = findMarker(text.substr(at, closingMarker.size()), 0);
            if (place.position != 0) {
                checkResemblance(story, at);
            } else if (place.opening) {
                ++depth;
            } else if (depth > 0) {
                --depth;
            } else {
                found_.add(DiagnosticCode::closingWithoutOpening, file_, story, {at, at + closingMarker.size()},
                           u"closing marker without an opening marker");
            }
        }
    }

    void checkResemblance(const Story& story, std::size_t index) {
        const std::u16string_view rest = std::u16string_view(story.text()).substr(index);
        for (const Resemblance& each : resemblances) {
            if (!equalIgnoringCase(rest.substr(0, each.text.size()), each.text)) continue;
            found_.add(DiagnosticCode::damagedMarker, file_, story, {index, index + each.text.size()},
                       u"this text resembles a marker", std::u16string(each.hint));
            return;
        }
    }

    void checkTag(std::size_t index) {
        const TemplateTag& tag = file_.tags()[index];
        isSound_[index] = false;
        if (!tag.span.complete()) return report(DiagnosticCode::neverClosed, tag, u"the tag is never closed");
        if (!isPlain(index)) {
            if (elementsEnd(index) < tag.span.close) return reportSwallowing(tag, index);
            reportFaults(tag, faultsOf(index));
        }
        const std::u16string_view inner = file_.innerOf(tag);
        if (inner.substr(0, inner.find(u'<')).find(handlerSeparator) == inner.npos) {
            return report(DiagnosticCode::noHandler, tag, u"tag names no handler: \">\" is missing");
        }
        isSound_[index] = true;
    }

    // Most tags hold no other one and nothing that needs a closer look.
    bool isPlain(std::size_t index) const {
        const TemplateTag& tag = file_.tags()[index];
        const Story& story = file_.storyOf(tag);
        if (tag.next != index + 1) return false;
        for (std::size_t at = tag.span.open; at < tag.span.close; ++at) {
            if (story.text()[at] == u'\n' || story.text()[at] >= curlyQuotes.front()) return false;
        }
        const TextRange source = story.source(tag.span.open, tag.span.end());
        return source.end - source.begin == tag.span.end() - tag.span.open;
    }

    // Where the tag's elements end: before its closing marker when the name of an element holds a tag, or a line end
    // between its letters. That is so when the tag's own closing marker is missing.
    std::size_t elementsEnd(std::size_t index) const {
        const TemplateTag& tag = file_.tags()[index];
        const std::u16string_view text = file_.storyOf(tag).text();
        ElementWalk elements(text);
        std::size_t nameBegin = text.npos;
        std::size_t lineEnd = text.npos;
        for (OwnText own(file_, index); own.next() && own.position() < tag.span.close;) {
            const std::size_t at = own.position();
            if (at < tag.span.open + openingMarker.size()) continue;
            if (own.isTag()) {
                if (elements.isInName()) return at;
                continue;
            }
            elements.take(at);
            if (!elements.isInName() || text[at] == elementSeparator) nameBegin = lineEnd = text.npos;
            if (!elements.isInName() || text[at] == elementSeparator) continue;
            if (text[at] == u'\n' && nameBegin != text.npos) lineEnd = at;
            if (text[at] > u' ' && lineEnd != text.npos) return lineEnd;
            if (text[at] > u' ' && nameBegin == text.npos) nameBegin = at;
        }
        return tag.span.close;
    }

    void reportSwallowing(const TemplateTag& tag, std::size_t index) {
        const std::size_t count = tag.next - index - 1;
        const SourcePlace end = file_.placeOf(file_.storyOf(tag).source(tag.span.close).begin);
        const std::u16string what = count == 0   ? std::u16string(u"text becomes")
                                    : count == 1 ? std::u16string(u"1 tag becomes")
                                                 : decimal(count) + u" tags become";
        report(DiagnosticCode::swallowsTags, tag,
               u"tag is closed by the marker of another: " + what + u" its text, up to " + decimal(end.line) + u":" +
                   decimal(end.column));
    }

    SourceFaults faultsOf(std::size_t index) const {
        const Story& story = file_.storyOf(file_.tags()[index]);
        SourceFaults faults;
        std::size_t end = story.source(file_.tags()[index].span.open).begin;  // of what was looked at in the source
        for (OwnText own(file_, index); own.next();) {
            const TextRange unit = story.source(own.position());
            for (std::size_t i = end; i < unit.begin; ++i) {
                const bool isLineEnd = file_.source()[i] == u'\r' || file_.source()[i] == u'\n';
                (isLineEnd ? faults.isBroken : faults.isCut) = true;
            }
            end = story.source(own.last()).end;
            if (own.isTag()) continue;
            const bool isCurly = curlyQuotes.find(story.text()[own.position()]) != curlyQuotes.npos;
            faults.isCurly |= isCurly;
            faults.isEscaped |= !isCurly && unit.end - unit.begin > 1;
        }
        return faults;
    }

    void reportFaults(const TemplateTag& tag, const SourceFaults& faults) {
        if (faults.isCut) {
            report(DiagnosticCode::cutByRtf, tag, u"formatting cuts the tag, which is not evaluated as it is seen");
        } else if (faults.isBroken) {
            report(DiagnosticCode::lineBreakInTag, tag, u"a line break of the source lies in the tag");
        }
        if (faults.isCurly) report(DiagnosticCode::curlyQuote, tag, u"the tag contains a curly quote");
        if (faults.isEscaped) {
            report(DiagnosticCode::escapedCharacter, tag,
                   u"the tag contains a character that RTF writes with an escape");
        }
    }

    void report(DiagnosticCode code, const TemplateTag& tag, std::u16string message, std::u16string hint = {}) {
        found_.add(code, file_, tag, std::move(message), std::move(hint));
    }

    const TemplateFile& file_;
    DiagnosticList& found_;
    std::vector<bool> isSound_;
};

}  // namespace

std::vector<bool> checkMarkup(const TemplateFile& file, DiagnosticList& found) {
    return MarkupCheck(file, found).run();
}

}  // namespace velmor
