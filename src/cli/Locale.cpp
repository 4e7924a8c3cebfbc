#include "cli/Locale.h"

#include "text/Encoding.h"

#ifndef _WIN32
#include <langinfo.h>
#include <locale.h>

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
class UserLocale {
public:
    UserLocale() : locale_(newlocale(LC_CTYPE_MASK, "", nullptr)) {
        if (locale_ == nullptr) locale_ = newlocale(LC_CTYPE_MASK, "C", nullptr);
    }
    ~UserLocale() { freelocale(locale_); }
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;

    bool isUtf8() const {
        const std::string_view name = nl_langinfo_l(CODESET, locale_);
        return name == "UTF-8" || name == "ANSI_X3.4-1968";
    }

    std::optional<std::wstring> decode(const std::string& text) const {
        const locale_t before = uselocale(locale_);
        std::wstring characters(text.size(), L'\0');
        const char* rest = text.c_str();
        std::mbstate_t state{};
        const std::size_t count = std::mbsrtowcs(characters.data(), &rest, characters.size(), &state);
        uselocale(before);
        if (count == static_cast<std::size_t>(-1)) return std::nullopt;
        characters.resize(count);
        return characters;
    }

private:
    locale_t locale_;
};

std::u16string toUtf16(std::wstring_view characters) {
    std::u16string text;
    for (const auto character : characters) {
        const auto code = static_cast<char32_t>(character);
        if (code < 0x10000) {
            text += static_cast<char16_t>(code);
        } else {
            text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
    }
    return text;
}

}  // namespace

TextEncoding localeEncoding() {
    return UserLocale().isUtf8() ? TextEncoding::utf8 : TextEncoding::ansi;
}

std::optional<std::string> argumentText(const std::string& argument) {
    const UserLocale locale;
    if (locale.isUtf8()) {
        return toUtf8(fromUtf8(argument)) == argument ? std::optional(argument) : std::nullopt;
    }
    const auto characters = locale.decode(argument);
    return characters ? std::optional(toUtf8(toUtf16(*characters))) : std::nullopt;
}

#endif

}  // namespace velmor::cli
