#include "cli/Documents.h"

#include <algorithm>
#include <cstdint>

#include "cli/Failure.h"
#include "core/TagContext.h"
#include "platform/ByteOrderMark.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

std::u16string decodeUtf8(std::string_view bytes, const std::string& name) {
    std::u16string text = fromUtf8(bytes);
    if (toUtf8(text) != bytes) throw Failure(exitFile, name + " is not UTF-8 text");
    return text;
}

bool isInAnsi(char16_t unit) {
    return unit < 128 || ansiCode(unit) != '?';
}

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// Does any \ucN ask for another number of fallback characters than 1?
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

std::string encodeRtf(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    const bool grouped = hasOtherFallback(text);
    for (std::size_t at = 0; at < text.size();) {
        const auto fitting = std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isInAnsi);
        const auto end = static_cast<std::size_t>(fitting - text.begin());
        bytes += toAnsi(text.substr(at, end - at));
        at = end;
        if (at == text.size()) break;
        if (grouped) bytes += "{\\uc1";
        for (; at < text.size() && !isInAnsi(text[at]); ++at) bytes += rtfEscape(text[at]);
        if (grouped) bytes += "}";
    }
    return bytes;
}

std::string encodePlain(std::u16string_view text) {
    const auto lost = std::find_if_not(text.begin(), text.end(), isInAnsi);
    if (lost == text.end()) return toAnsi(text);
    const auto position = static_cast<std::size_t>(lost - text.begin());
    const bool pair = (*lost & 0xFC00) == 0xD800 && position + 1 < text.size();
    throw Failure(exitFile, "the result holds '" + toUtf8(text.substr(position, pair ? 2 : 1)) + "' (position " +
                                std::to_string(position + 1) +
                                "), which the ANSI code page has not; use --encoding utf-8");
}

}  // namespace

std::u16string decodeText(std::string_view bytes, TextEncoding encoding, const std::string& name) {
    if (bytes.starts_with(utf8Mark)) return decodeUtf8(bytes.substr(utf8Mark.size()), name);
    if (auto marked = platform::decodeMarked(bytes)) return *std::move(marked);
    return encoding == TextEncoding::utf8 ? decodeUtf8(bytes, name) : fromAnsi(bytes);
}

Document decodeTemplate(std::string_view bytes, TextEncoding encoding, const std::string& name) {
    if (bytes.starts_with("{\\rtf1")) return {fromAnsi(bytes), encoding};
    if (bytes.starts_with(utf8Mark)) encoding = TextEncoding::utf8;
    return {encoding == TextEncoding::utf8 ? decodeUtf8(bytes, name) : fromAnsi(bytes), encoding};
}

std::string encodeResult(std::u16string_view result, TextEncoding encoding) {
    if (result.starts_with(kRtfStart)) return encodeRtf(result);
    return encoding == TextEncoding::utf8 ? toUtf8(result) : encodePlain(result);
}

}  // namespace velmor::cli
