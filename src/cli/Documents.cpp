#include "cli/Documents.h"

#include "cli/Failure.h"
#include "platform/ByteOrderMark.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

std::u16string decodeUtf8(std::string_view bytes, const std::string& name) {
    std::u16string text = fromUtf8(bytes);
    if (toUtf8(text) != bytes) throw Failure(exitFile, name + " is not UTF-8 text");
    return text;
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

std::string encodeResult(std::u16string_view result, TextEncoding encoding) try {
    return encodeDocument(result, encoding);
} catch (const Error& error) {
    throw Failure(exitFile, std::string("cannot write the result: ") + error.what() + "; use --encoding utf-8");
}

}  // namespace velmor::cli
