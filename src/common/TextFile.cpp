#include "common/TextFile.h"

#include <atomic>
#include <utility>

#include "text/Encoding.h"

namespace velmor {
namespace {

// An engine may be made while another reads.
std::atomic<std::u16string (*)(std::string_view)> textFileDecoder = &decodeTextFile;

}  // namespace

void useTextFileDecoder(std::u16string (*decode)(std::string_view bytes)) noexcept {
    textFileDecoder = decode;
}

std::u16string decodeTextFile(std::string_view bytes) {
    auto marked = decodeMarked(bytes);
    return marked ? std::move(*marked) : fromAnsi(bytes);
}

std::u16string decodeTextFileOrUtf8(std::string_view bytes) {
    auto text = decodeMarked(bytes);
    if (!text && !bytes.starts_with("{\\rtf") && !isAscii(bytes)) text = textOfUtf8(bytes);
    return text ? *std::move(text) : fromAnsi(bytes);
}

// The comparison also detects texts that begin like a mark.
std::string encodeTextFile(std::u16string_view text) {
    std::string bytes = toAnsi(text);
    return textFileDecoder.load()(bytes) == text ? bytes : "\xef\xbb\xbf" + toUtf8(text);
}

std::optional<std::u16string> readTextFile(const platform::Files& files, std::u16string_view path) {
    const auto bytes = files.read(path);
    return bytes ? std::optional(textFileDecoder.load()(*bytes)) : std::nullopt;
}

bool appendTextFile(platform::Files& files, std::u16string_view path, std::u16string_view text, bool pbCreate) {
    if (!pbCreate && !files.exists(path)) return false;
    return files.append(path, toAnsi(text));
}

}  // namespace velmor
