#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// What `check` and `verify` find. The numbers are stable: users and editors filter by them. docs/diagnostics.md
// describes each.
enum class DiagnosticCode : std::uint16_t {
    swallowsTags = 101,
    neverClosed = 102,
    closingWithoutOpening = 103,
    cutByRtf = 104,
    lineBreakInTag = 105,
    curlyQuote = 106,
    escapedCharacter = 107,
    noHandler = 108,
    damagedMarker = 109,
    unknownHandler = 201,
    unknownCommand = 202,
    unknownParameter = 203,
    unsuitableValue = 204,
    unsetProperty = 301,
    similarPropertySet = 302,
    missingInclude = 401,
    missingEntry = 402,
    circle = 403,
    binaryInclude = 404,
    outsideRoot = 405,
    tooDeep = 501,
    tooManyTags = 502,
    tooLong = 503,
    damagedGroups = 601,
    damagedTable = 602,
    unresolvedFont = 701,
    unresolvedColour = 702,
    unresolvedStyle = 703,
    unresolvedList = 704,
    markerLeft = 705,
    strayBinary = 706,
    unresolvedStyleLink = 707,
    unresolvedListId = 708,
    unresolvedTheme = 709,
};

enum class Severity : std::uint8_t { warning, error };

// A place in a file. All count from 1, lines and columns in UTF-16 code units.
struct SourcePlace {
    std::u16string file;
    std::size_t offset = 0;
    std::size_t line = 0;
    std::size_t column = 0;
};

struct Diagnostic {
    DiagnosticCode code;
    SourcePlace place;
    std::size_t length = 0;  // of the faulty part, in UTF-16 code units of the file; at least 1
    std::u16string message;  // without the place; no line ends
    std::u16string hint;     // "did you mean FORMAT?"; empty if there is none
    std::u16string seenAt;   // "page text, paragraph 4", as the author sees the place; empty in plain text
    std::u16string context;  // the text around it as the author sees it
    std::vector<SourcePlace> includedFrom;  // the tags that included the file, the nearest first
};

Severity severityOf(DiagnosticCode code) noexcept;
// "error", "warning".
std::u16string_view severityText(DiagnosticCode code) noexcept;
// "KV101".
std::u16string codeText(DiagnosticCode code);
// What the code is about, for lists of rules. Lasts for ever.
std::u16string_view titleOf(DiagnosticCode code) noexcept;
// Every code, in ascending order.
const std::vector<DiagnosticCode>& allDiagnosticCodes();

// "letter.rtf:3:12"; without the name when it is empty.
std::u16string placeText(const SourcePlace& place);
// The message and the hint, on one line.
std::u16string messageText(const Diagnostic& diagnostic);
// The whole diagnostic as one line for an editor's error list, without a line end: "letter.rtf:3:12: error KV101: ...".
std::u16string lineOf(const Diagnostic& diagnostic);

}  // namespace velmor
