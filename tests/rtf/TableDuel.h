#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "LiteralTables.h"
#include "Pieces.h"
#include "rtf/tables/TableMarkers.h"

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

// The text with its identifiers numbered in order of appearance: the order in which tables got them does
// not matter.
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

// Table RTF generated from bytes: difficult pieces, and sometimes rows as programs write them.
inline std::u16string tableText(const std::uint8_t* data, std::size_t size) {
    static const auto pieces = piecesOf(
        u"\\trowd\\irow0|\\trowd \\irow0|\\trowd\\irow1\\cellx9|\\lastrow|\\lastrow\\row|\\row|\\row |\\cell|"
        u"\\cell }|\\cell\\row|\\cellx1|\\intbl|\\itap|\\itap0|\\itap1 |\\itap2|\\itap3 |\\itap-2|\\par|"
        u"\\par |\\pard|\\pard\\intbl\\itap2 |\\nestcell|\\nestcell |\\nestrow|"
        u"{\\*\\nesttableprops\\trowd\\irow0\\nestrow}|{\\*\\nesttableprops\\trowd\\irow1\\lastrow\\nestrow}|"
        u"{\\*\\nesttableprops\\trowd \\irow0\\lastrow\\cellx5\\nestrow}{\\nonesttables\\par}|"
        u"\\nesttableprops |{\\nonesttables|{|}|\\|\\'e4| |\r\n|x|{\\*\\korvane\\endtable|"
        u"\\pard\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}|"
        u"\\pard\\intbl\\itap3 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}|"
        u"\\pard\\intbl b\\cell\\pard\\intbl\\trowd\\irow1\\row |"
        u"\\trowd\\irow0\\lastrow\\intbl c\\cell \\trowd\\row|"
        u"\\trowd\\irow1\\lastrow\\cell{\\trowd\\lastrow\\row}");
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) text += pieces[data[i] % pieces.size()];
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

// The end of the range is beyond the text.
inline DuelOutcome duelRemoveExtraTrowd(const std::u16string& text, std::int32_t start, std::int32_t end) {
    CountedGuids guids;
    LiteralTables literal(text, guids);
    std::u16string value = text;
    auto literalEnd = static_cast<std::size_t>(end) - 1;
    literal.removeExtraDefinitions(static_cast<std::size_t>(start) - 1, literalEnd);
    RemoveExtraTrowd(value, start, end);
    return {value + static_cast<char16_t>(end), literal.text() + static_cast<char16_t>(literalEnd + 1)};
}

}  // namespace velmor::test
