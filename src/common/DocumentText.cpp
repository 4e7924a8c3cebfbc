#include "common/DocumentText.h"

#include <algorithm>
#include <cstdint>

#include "text/Characters.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/RtfStart.h"

namespace velmor {
namespace {

bool isInAnsi(char16_t unit) {
    return unit < 128 || ansiCode(unit) != '?';
}

// The first character at or after the index that the code page lacks; the text's size when there is none.
std::size_t findLost(std::u16string_view text, std::size_t at) {
    for (at += asciiLength(text.substr(at)); at < text.size() && isInAnsi(text[at]);) {
        ++at;
        at += asciiLength(text.substr(at));
    }
    return at;
}

// Whether a \ucN sets a number of fallback characters other than 1.
bool hasOtherFallback(std::u16string_view rtf) {
    for (auto at = rtf.find(u"\\uc"); at != rtf.npos; at = rtf.find(u"\\uc", at + 3)) {
        const auto number = rtf.substr(at + 3, 2);
        if (!number.empty() && isDigit(number[0]) && (number[0] != u'1' || (number.size() > 1 && isDigit(number[1])))) {
            return true;
        }
    }
    return false;
}

std::string rtfEscape(char16_t unit) {
    return "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
}

std::string encodeRtf(std::u16string_view text, PlaceShifts* shifts) {
    std::string bytes;
    bytes.reserve(text.size());
    const bool grouped = hasOtherFallback(text);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = findLost(text, at);
        bytes += toAnsi(text.substr(at, end - at));
        at = end;
        if (at == text.size()) break;
        const auto next = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isInAnsi);
        const auto last = static_cast<std::size_t>(next - text.begin()) - 1;
        for (bool isFirst = true; at <= last; ++at, isFirst = false) {
            std::string escape = rtfEscape(text[at]);
            if (grouped && isFirst) escape.insert(0, "{\\uc1");
            if (grouped && at == last) escape += "}";
            bytes += escape;
            if (shifts != nullptr) shifts->push_back({at + 1, bytes.size()});
        }
    }
    return bytes;
}

std::string encodePlain(std::u16string_view text) {
    const std::size_t lost = findLost(text, 0);
    if (lost == text.size()) return toAnsi(text);
    const bool pair = isHighSurrogate(text[lost]) && lost + 1 < text.size();
    const std::u16string character(text.substr(lost, pair ? 2 : 1));
    throw Error(5, u"The text contains '" + character + u"' (position " + fromUtf8(std::to_string(lost + 1)) +
                       u"), which the ANSI code page lacks");
}

std::string encodeUtf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    bytes.reserve(2 * text.size());
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

}  // namespace

std::string encodeDocument(std::u16string_view text, TextEncoding encoding, PlaceShifts* shifts) {
    if (text.starts_with(rtfStart)) return encodeRtf(text, shifts);
    if (encoding == TextEncoding::ansi) return encodePlain(text);
    if (encoding == TextEncoding::utf8) return toUtf8(text);
    return encodeUtf16(text, encoding == TextEncoding::utf16BigEndian);
}

}  // namespace velmor
