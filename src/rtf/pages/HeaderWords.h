#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

enum class HeaderKind : std::uint8_t { header, footer };
inline constexpr std::array headerKinds = {HeaderKind::header, HeaderKind::footer};

// The pages that a header or footer group is for: {\header, {\headerr, {\headerl, {\headerf.
enum class HeaderPages : std::uint8_t { all, right, left, first };

struct HeaderName {
    HeaderKind kind;
    HeaderPages pages;

    // The opening of such a group.
    constexpr std::u16string_view opening() const noexcept {
        constexpr std::u16string_view openings[2][4] = {{u"{\\header", u"{\\headerr", u"{\\headerl", u"{\\headerf"},
                                                        {u"{\\footer", u"{\\footerr", u"{\\footerl", u"{\\footerf"}};
        return openings[static_cast<std::size_t>(kind)][static_cast<std::size_t>(pages)];
    }
};

// The name in the letters of a group's first word.
constexpr std::optional<HeaderName> headerNamed(std::u16string_view letters) noexcept {
    for (const HeaderKind kind : headerKinds) {
        for (const HeaderPages pages : {HeaderPages::all, HeaderPages::right, HeaderPages::left, HeaderPages::first}) {
            const HeaderName name{kind, pages};
            if (name.opening().substr(2) == letters) return name;
        }
    }
    return std::nullopt;
}

// Appends a copy of a group, for the pages of `name`; an empty group when there is none.
void appendGroup(std::u16string& text, HeaderName name, std::u16string_view group);

// One value for the headers and one for the footers.
template <typename Value>
struct PerKind {
    std::array<Value, 2> values{};

    bool operator==(const PerKind&) const = default;

    Value& operator[](HeaderKind kind) noexcept { return values[static_cast<std::size_t>(kind)]; }
    const Value& operator[](HeaderKind kind) const noexcept { return values[static_cast<std::size_t>(kind)]; }
};

// The words of a section's page borders: \pgbrdrt and the like, each with the words for its line.
inline constexpr std::array<std::u16string_view, 6> frameWords = {u"pgbrdrt", u"pgbrdrb",   u"pgbrdrl",
                                                                  u"pgbrdrr", u"pgbrdropt", u"pgbrdrsnap"};

// The words of a section about its headers and footers.
struct HeaderWords {
    PerKind<std::u16string_view> distance;  // \headery, \footery, with their numbers
    PerKind<bool> border;                   // \pgbrdrhead, \pgbrdrfoot
    std::array<std::u16string_view, frameWords.size()> frame{};
    bool title = false;  // \titlepg: the first page has its own

    bool operator==(const HeaderWords&) const = default;
};

}  // namespace velmor
