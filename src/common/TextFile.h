#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor {

// A file is single-byte text in the ANSI code page, every byte one character, unless it begins
// with a byte order mark: UTF-8 and UTF-16 (either order) are then decoded, without the mark.
std::u16string decodeTextFile(std::string_view bytes);

// The same, except that bytes beyond ASCII that are valid UTF-8 are UTF-8. RTF is always in the ANSI code page.
std::u16string decodeTextFileOrUtf8(std::string_view bytes);

// Makes readTextFile use another function than decodeTextFile, for a program whose users have files in
// other encodings. It holds for the whole program: call it at start-up, before any file is read.
void useTextFileDecoder(std::u16string (*decode)(std::string_view bytes)) noexcept;

// The bytes that readTextFile reads as this text: the ANSI code page if it has every character,
// else UTF-8 after a byte order mark. No character is lost.
std::string encodeTextFile(std::u16string_view text);

// Nothing when the file is missing or unreadable; an empty file gives "".
std::optional<std::u16string> readTextFile(const platform::Files& files, std::u16string_view path);

// Adds the text to the end of the file in the ANSI code page; a character that it lacks becomes "?". If the file is
// absent, it is made if pbCreate is true, and the call fails otherwise.
bool appendTextFile(platform::Files& files, std::u16string_view path, std::u16string_view text, bool pbCreate);

}  // namespace velmor
