#include "cli/Locale.h"

#include "text/Encoding.h"

#ifndef _WIN32
#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <cuchar>
#include <cwchar>
#include <string_view>
#include <utility>
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

    // Nothing if the text is not in the locale's encoding.
    std::optional<std::u16string> decode(std::string_view text) const {
        constexpr auto noCharacter = static_cast<std::size_t>(-2);
        const locale_t before = uselocale(locale_);
        std::u16string decoded;
        std::mbstate_t state{};
        std::size_t size = 0;
        while (size < noCharacter && (!text.empty() || std::mbsinit(&state) == 0)) {
            char16_t unit = 0;
            size = std::mbrtoc16(&unit, text.data(), text.size(), &state);
            decoded += unit;
            // The second unit of a character takes no bytes.
            if (size <= text.size()) text.remove_prefix(std::max<std::size_t>(size, 1));
        }
        uselocale(before);
        return size < noCharacter ? std::optional(std::move(decoded)) : std::nullopt;
    }

private:
    locale_t locale_;
};

}  // namespace

TextEncoding localeEncoding() {
    return UserLocale().isUtf8() ? TextEncoding::utf8 : TextEncoding::ansi;
}

std::optional<std::string> argumentText(const std::string& argument) {
    const UserLocale locale;
    const auto text = locale.isUtf8() ? textOfUtf8(argument) : locale.decode(argument);
    return text ? std::optional(toUtf8(*text)) : std::nullopt;
}

#endif

}  // namespace velmor::cli
