#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>

#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

std::filesystem::path toPath(std::u16string_view name) {
#ifdef _WIN32
    return std::filesystem::path(name);
#else
    return std::filesystem::path(toUtf8(name));
#endif
}

// The file's text, or nothing when it cannot be read as a whole or held.
std::optional<std::u16string> readFile(std::u16string_view name) noexcept try {
    if (name.find(u'\0') != name.npos) return std::nullopt;
    std::ifstream file(toPath(name), std::ios::binary);
    std::string bytes;
    std::array<char, 65536> chunk;
    while (file) {
        file.read(chunk.data(), chunk.size());
        bytes.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
        if (bytes.size() > privStrCat::maximumLength) return std::nullopt;
    }
    if (file.bad() || !file.eof()) return std::nullopt;
    return fromAnsi(bytes);
} catch (const std::exception&) {
    return std::nullopt;
}

}  // namespace

std::int32_t privStrCat::LoadFromFile(std::u16string_view psFileName) noexcept {
    if (std::optional<std::u16string> text = readFile(psFileName)) {
        buffer_ = std::move(*text);
        length_ = capacity_ = buffer_.size();
    }
    return Length();
}

std::int32_t privStrCat::LoadFromFileAppend(std::u16string_view psFileName) noexcept {
    const std::int32_t before = Length();
    if (std::optional<std::u16string> text = readFile(psFileName)) AppendVal(std::move(*text));
    return Length() - before;
}

}  // namespace velmor
