#include "cli/Documents.h"

#include <optional>
#include <utility>

#include "cli/Failure.h"
#include "cli/Locale.h"
#include "common/TextFile.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

bool isRtf(std::string_view bytes) {
    return bytes.starts_with("{\\rtf");
}

std::u16string decodeUtf8(std::string_view bytes, const std::string& name) {
    if (auto text = textOfUtf8(bytes)) return *std::move(text);
    throw Failure(exitFile, name + " is not UTF-8 text");
}

std::u16string decodeUtf16(std::string_view bytes, bool bigEndian, const std::string& name) {
    if (bytes.size() % 2 != 0) throw Failure(exitFile, name + " is not UTF-16 text: it ends with half a character");
    return fromUtf16(bytes, bigEndian);
}

// The text with its byte order mark, if it has one.
Document decodeMarkedOr(std::string_view bytes, EncodingChoice choice, const std::string& name) {
    const auto marked = markedEncoding(bytes);
    if (marked && *marked != TextEncoding::utf8) {
        return {decodeUtf16(bytes, *marked == TextEncoding::utf16BigEndian, name), *marked};
    }
    if (marked || choice == EncodingChoice::utf8) return {decodeUtf8(bytes, name), TextEncoding::utf8};
    if (choice == EncodingChoice::automatic && !isAscii(bytes)) {
        if (auto text = textOfUtf8(bytes)) return {*std::move(text), TextEncoding::utf8};
    }
    return {fromAnsi(bytes), TextEncoding::ansi};
}

}  // namespace

std::u16string decodeText(std::string_view bytes, EncodingChoice choice, const std::string& name) {
    std::u16string text = decodeMarkedOr(bytes, choice, name).text;
    if (markedEncoding(bytes)) text.erase(0, 1);
    return text;
}

Document decodeTemplate(std::string_view bytes, EncodingChoice choice, const std::string& name) {
    if (isRtf(bytes)) return {fromAnsi(bytes), TextEncoding::ansi};
    Document document = decodeMarkedOr(bytes, choice, name);
    if (choice == EncodingChoice::automatic && isAscii(bytes)) document.encoding = localeEncoding();
    return document;
}

std::string encodeResult(std::u16string_view result, TextEncoding encoding, PlaceShifts* shifts) try {
    return encodeDocument(result, encoding, shifts);
} catch (const Error& error) {
    throw Failure(exitFile, std::string("cannot write the result: ") + error.what() +
                                "; use a template in UTF-8, with --encoding utf-8 when it is ASCII alone");
}

}  // namespace velmor::cli
