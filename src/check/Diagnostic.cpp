#include "check/Diagnostic.h"

#include <algorithm>

#include "rtf/read/RtfReader.h"
#include "text/OneLine.h"

namespace velmor {

namespace {

struct Rule {
    DiagnosticCode code;
    Severity severity;
    std::u16string_view title;
};

constexpr Rule rules[] = {
    {DiagnosticCode::swallowsTags, Severity::error, u"A tag is closed by the marker of another"},
    {DiagnosticCode::neverClosed, Severity::error, u"An opening marker is never closed"},
    {DiagnosticCode::closingWithoutOpening, Severity::error, u"A closing marker has no opening marker"},
    {DiagnosticCode::cutByRtf, Severity::error, u"Formatting cuts a tag"},
    {DiagnosticCode::lineBreakInTag, Severity::warning, u"A line break of the source lies in a tag"},
    {DiagnosticCode::curlyQuote, Severity::warning, u"A tag contains a curly quote"},
    {DiagnosticCode::escapedCharacter, Severity::warning, u"A tag contains an escaped character"},
    {DiagnosticCode::noHandler, Severity::error, u"A tag names no handler"},
    {DiagnosticCode::damagedMarker, Severity::warning, u"A text resembles a marker"},
    {DiagnosticCode::unknownHandler, Severity::error, u"A handler is not registered"},
    {DiagnosticCode::unknownCommand, Severity::error, u"A handler does not have the command"},
    {DiagnosticCode::unknownParameter, Severity::warning, u"A command does not have the parameter"},
    {DiagnosticCode::unsuitableValue, Severity::warning, u"A parameter does not take the value"},
    {DiagnosticCode::unsetProperty, Severity::error, u"Nothing sets a property that has no default"},
    {DiagnosticCode::similarPropertySet, Severity::warning, u"A property is not set, but one of a similar name is"},
    {DiagnosticCode::missingInclude, Severity::error, u"An included file does not exist"},
    {DiagnosticCode::missingEntry, Severity::error, u"A list file does not have the entry"},
    {DiagnosticCode::circle, Severity::error, u"Files or properties include each other in a circle"},
    {DiagnosticCode::binaryInclude, Severity::error, u"A binary file is included as text"},
    {DiagnosticCode::outsideRoot, Severity::error, u"An included file is not in the folder of files to include"},
    {DiagnosticCode::tooDeep, Severity::error, u"Tags are nested too deep"},
    {DiagnosticCode::tooManyTags, Severity::error, u"There are more tags than evaluation takes"},
    {DiagnosticCode::tooLong, Severity::error, u"The result is longer than evaluation allows"},
    {DiagnosticCode::damagedGroups, Severity::error, u"Braces of an RTF document do not match"},
    {DiagnosticCode::damagedTable, Severity::warning, u"A table row is damaged"},
    {DiagnosticCode::unresolvedFont, Severity::error, u"A font is not in the font table"},
    {DiagnosticCode::unresolvedColour, Severity::error, u"A colour is not in the colour table"},
    {DiagnosticCode::unresolvedStyle, Severity::error, u"A style is not in the style sheet"},
    {DiagnosticCode::unresolvedList, Severity::error, u"A list is not in the table of list overrides"},
    {DiagnosticCode::markerLeft, Severity::error, u"A tag or a marker is left in a finished document"},
    {DiagnosticCode::strayBinary, Severity::error, u"A finished document holds binary data"},
    {DiagnosticCode::unresolvedStyleLink, Severity::warning,
     u"A style refers to a style that is not in the style sheet"},
    {DiagnosticCode::unresolvedListId, Severity::warning,
     u"A list override refers to a list that is not in the list table"},
    {DiagnosticCode::unresolvedTheme, Severity::warning, u"A colour is one of a theme that the document does not have"},
};

const Rule& ruleOf(DiagnosticCode code) noexcept {
    return *std::find_if(std::begin(rules), std::end(rules), [&](const Rule& rule) { return rule.code == code; });
}

}  // namespace

Severity severityOf(DiagnosticCode code) noexcept {
    return ruleOf(code).severity;
}

std::u16string_view severityText(DiagnosticCode code) noexcept {
    return severityOf(code) == Severity::error ? u"error" : u"warning";
}

std::u16string codeText(DiagnosticCode code) {
    return u"KV" + decimal(static_cast<std::int64_t>(code));
}

std::u16string_view titleOf(DiagnosticCode code) noexcept {
    return ruleOf(code).title;
}

const std::vector<DiagnosticCode>& allDiagnosticCodes() {
    static const std::vector<DiagnosticCode> codes = [] {
        std::vector<DiagnosticCode> all;
        for (const Rule& rule : rules) all.push_back(rule.code);
        return all;
    }();
    return codes;
}

std::u16string placeText(const SourcePlace& place) {
    return place.file + (place.file.empty() ? u"" : u":") + decimal(place.line) + u":" + decimal(place.column);
}

std::u16string messageText(const Diagnostic& diagnostic) {
    return onOneLine(diagnostic.hint.empty() ? diagnostic.message : diagnostic.message + u"; " + diagnostic.hint);
}

std::u16string lineOf(const Diagnostic& diagnostic) {
    std::u16string line = placeText(diagnostic.place) + u": ";
    line.append(severityText(diagnostic.code)).append(u" ").append(codeText(diagnostic.code)).append(u": ");
    line += messageText(diagnostic);
    if (!diagnostic.seenAt.empty()) line += u" [" + diagnostic.seenAt + u"] \"" + onOneLine(diagnostic.context) + u"\"";
    for (const SourcePlace& place : diagnostic.includedFrom) line += u" (included from " + placeText(place) + u")";
    return line;
}

}  // namespace velmor
