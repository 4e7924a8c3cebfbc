#include "cli/Locale.h"

#include "text/Encoding.h"

#ifndef _WIN32
#include <langinfo.h>

#include <algorithm>
#include <clocale>
#include <cuchar>
#include <cwchar>
#include <string_view>
#endif

namespace velmor::cli {

#ifdef _WIN32

TextEncoding localeEncoding() {
    return TextEncoding::ansi;
}

std::optional<std::string> argumentText(const std::string& argument) {
    return argument;
}

#else

namespace {

// The character set of the user's locale; of C when the locale is not installed.
bool isLocaleUtf8() {
    std::setlocale(LC_CTYPE, "");
    const std::string_view name = nl_langinfo(CODESET);
    return name == "UTF-8" || name == "ANSI_X3.4-1968";
}

// Nothing if the text is not in the locale's encoding.
std::optional<std::u16string> decodeByLocale(std::string_view text) {
    constexpr auto noCharacter = static_cast<std::size_t>(-2);
    std::u16string decoded;
    std::mbstate_t state{};
    while (!text.empty() || std::mbsinit(&state) == 0) {
        char16_t unit = 0;
        const std::size_t size = std::mbrtoc16(&unit, text.data(), text.size(), &state);
        if (size == noCharacter || size == noCharacter + 1) return std::nullopt;
        decoded += unit;
        // The second unit of a character takes no bytes.
        if (size <= text.size()) text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return decoded;
}

}  // namespace

TextEncoding localeEncoding() {
    return isLocaleUtf8() ? TextEncoding::utf8 : TextEncoding::ansi;
}

std::optional<std::string> argumentText(const std::string& argument) {
    const auto text = isLocaleUtf8() ? textOfUtf8(argument) : decodeByLocale(argument);
    return text ? std::optional(toUtf8(*text)) : std::nullopt;
}

#endif

}  // namespace velmor::cli
