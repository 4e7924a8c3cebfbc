#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "LiteralTables.h"
#include "rtf/TableMarkers.h"

namespace velmor::test {

class CountedGuids : public platform::Guids {
public:
    std::u16string next() override {
        const std::string digits = std::to_string(1000000000000 + ++count_).substr(1);
        return u"{00000000-0000-0000-0000-" + std::u16string(digits.begin(), digits.end()) + u"}";
    }

private:
    std::int64_t count_ = 0;
};

// The text with its identities numbered in the order in which they appear: which table got its
// identity first does not matter.
inline std::u16string withNumberedIdentities(std::u16string text) {
    std::map<std::u16string, std::u16string> numbers;
    CountedGuids guids;
    for (const std::u16string_view marker : {startTableMarker, endTableMarker}) {
        for (std::size_t at = 0; (at = text.find(marker, at)) != std::u16string::npos;) {
            at += marker.size();
            if (text.find_first_not_of(u"{}-0123456789", at) < at + 39) continue;
            std::u16string& number = numbers[text.substr(at, 38)];
            if (number.empty()) number = guids.next();
            text.replace(at, 38, number);
        }
    }
    return text;
}

// Table RTF out of bytes: pieces that hurt, and now and then rows as they are written.
inline std::u16string tableText(const std::uint8_t* data, std::size_t size) {
    static const std::u16string_view pieces[] = {
        u"\\trowd\\irow0",
        u"\\trowd \\irow0",
        u"\\trowd\\irow1\\cellx9",
        u"\\lastrow",
        u"\\lastrow\\row",
        u"\\row",
        u"\\row ",
        u"\\cell",
        u"\\cell }",
        u"\\cell\\row",
        u"\\cellx1",
        u"\\intbl",
        u"\\itap",
        u"\\itap0",
        u"\\itap1 ",
        u"\\itap2",
        u"\\itap3 ",
        u"\\itap-2",
        u"\\par",
        u"\\par ",
        u"\\pard",
        u"\\pard\\intbl\\itap2 ",
        u"\\nestcell",
        u"\\nestcell ",
        u"\\nestrow",
        u"{\\*\\nesttableprops\\trowd\\irow0\\nestrow}",
        u"{\\*\\nesttableprops\\trowd\\irow1\\lastrow\\nestrow}",
        u"{\\*\\nesttableprops\\trowd \\irow0\\lastrow\\cellx5\\nestrow}{\\nonesttables\\par}",
        u"\\nesttableprops ",
        u"{\\nonesttables",
        u"{",
        u"}",
        u"\\",
        u"\\'e4",
        u" ",
        u"\r\n",
        u"x",
        u"{\\*\\korvane\\endtable",
        u"{\\*\\korvane\\endtable{01234567-0123-0123-0123-0123456789ab}}",
        u"\\pard\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}",
        u"\\pard\\intbl\\itap3 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}",
        u"\\pard\\intbl b\\cell\\pard\\intbl\\trowd\\irow1\\row ",
        u"\\trowd\\irow0\\lastrow\\intbl c\\cell \\trowd\\row",
        u"\\trowd\\irow1\\lastrow\\cell{\\trowd\\lastrow\\row}",
    };
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) text += pieces[data[i] % std::size(pieces)];
    return text;
}

struct DuelOutcome {
    std::u16string fast;
    std::u16string literal;
    bool same() const { return fast == literal; }
};

inline DuelOutcome duelAddMarkers(const std::u16string& text) {
    CountedGuids guids;
    LiteralTables literal(text, guids);
    std::u16string value = text;
    literal.addMarkers();
    addTableMarkers(value, guids);
    return {withNumberedIdentities(value), withNumberedIdentities(literal.text())};
}

// The end of the range stands behind the text.
inline DuelOutcome duelRemoveExtraTrowd(const std::u16string& text, std::int32_t start, std::int32_t end) {
    CountedGuids guids;
    LiteralTables literal(text, guids);
    std::u16string value = text;
    std::int32_t literalEnd = end;
    RemoveExtraTrowd(value, start, end);
    literal.removeExtraDefinitions(start, literalEnd);
    return {value + static_cast<char16_t>(end), literal.text() + static_cast<char16_t>(literalEnd)};
}

// Twice: the second time start markers stand there already.
inline DuelOutcome duelMarkNested(const std::u16string& text, std::int32_t start, std::int32_t end) {
    CountedGuids guids;
    LiteralTables literal(text, guids);
    std::u16string value = text;
    std::int32_t literalEnd = end;
    std::int32_t counts[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        counts[0] += MarkNestedTables(value, start, end, guids);
        counts[1] += literal.markNested(start, literalEnd);
    }
    const auto outcome = [](const std::u16string& result, std::int32_t last, std::int32_t count) {
        return withNumberedIdentities(result) + static_cast<char16_t>(last) + static_cast<char16_t>(count);
    };
    return {outcome(value, end, counts[0]), outcome(literal.text(), literalEnd, counts[1])};
}

}  // namespace velmor::test
