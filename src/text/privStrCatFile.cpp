#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>
#include <utility>

#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

constexpr std::size_t chunkBytes = 65536;

std::filesystem::path toPath(std::u16string_view name) {
#ifdef _WIN32
    return std::filesystem::path(name);
#else
    return std::filesystem::path(toUtf8(name));
#endif
}

// A guess that spares the text from being copied as it grows; the file itself is the judge.
std::size_t expectedSize(const std::filesystem::path& path) {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    return failure || size > privStrCat::maximumLength ? 0 : static_cast<std::size_t>(size);
}

// The file's text, or nothing when it cannot be read as a whole or held.
std::optional<std::u16string> readFile(std::u16string_view name) {
    if (name.find(u'\0') != name.npos) return std::nullopt;
    const std::filesystem::path path = toPath(name);
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::u16string text;
    text.reserve(expectedSize(path));
    std::string chunk;
    while (file) {
        const std::size_t kept = chunk.size();  // the beginning of a character
        chunk.resize(kept + chunkBytes);
        file.read(chunk.data() + kept, chunkBytes);
        chunk.resize(kept + static_cast<std::size_t>(file.gcount()));
        const std::string_view whole = file ? wholeAnsi(chunk) : chunk;
        text += fromAnsi(whole);
        chunk.erase(0, whole.size());
        if (text.size() > privStrCat::maximumLength) return std::nullopt;
    }
    if (file.bad() || !file.eof()) return std::nullopt;
    return text;
}

std::optional<std::u16string> readFileOrNothing(std::u16string_view name) noexcept {
    try {
        return readFile(name);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

std::int32_t privStrCat::LoadFromFile(std::u16string_view psFileName) noexcept {
    if (std::optional<std::u16string> text = readFileOrNothing(psFileName)) {
        content_.adopt(std::move(*text));
        tail_.clear();
        capacity_ = content_.size();
        quickRoom_ = 0;
    }
    return Length();
}

std::int32_t privStrCat::LoadFromFileAppend(std::u16string_view psFileName) noexcept {
    const std::int32_t before = Length();
    if (std::optional<std::u16string> text = readFileOrNothing(psFileName)) AppendVal(std::move(*text));
    return Length() - before;
}

}  // namespace velmor
