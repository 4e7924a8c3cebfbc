#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

enum class HeaderKind : std::uint8_t { header, footer };
inline constexpr std::array headerKinds = {HeaderKind::header, HeaderKind::footer};

// The pages that a header or footer group is for: {\header, {\headerr, {\headerl, {\headerf.
enum class HeaderPages : std::uint8_t { all, right, left, first };

// The right pages for all: readers treat a group for all pages as one for right pages, which left ones may differ from.
constexpr HeaderPages ordinary(HeaderPages pages) noexcept {
    return std::max(pages, HeaderPages::right);
}

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

// A copy of a group, for the pages of `name`; an empty group when there is none.
inline std::u16string groupFor(HeaderName name, std::u16string_view group) {
    const std::u16string opening(name.opening());
    if (group.empty()) return opening + u"\\pard\\plain\\fs2\\par}";  // a low line, which moves nothing
    return opening + std::u16string(group.substr(2 + readWord(group, 1).letters.size()));
}

// One value for the headers and one for the footers.
template <typename Value>
struct PerKind {
    std::array<Value, 2> values{};

    Value& operator[](HeaderKind kind) noexcept { return values[static_cast<std::size_t>(kind)]; }
    const Value& operator[](HeaderKind kind) const noexcept { return values[static_cast<std::size_t>(kind)]; }
    bool operator==(const PerKind&) const = default;
};

// The words of a section about its headers, footers and page borders, as they are written; empty if absent. The word
// for a page border includes those for its line.
class HeaderWords {
public:
    static constexpr bool has(Word word) noexcept { return word >= Word::headery; }

    std::u16string_view& operator[](Word word) noexcept { return words_[indexOf(word)]; }
    std::u16string_view operator[](Word word) const noexcept { return words_[indexOf(word)]; }

    // Without those about the other kind alone.
    HeaderWords about(HeaderKind kind) const noexcept {
        const bool header = kind == HeaderKind::header;
        HeaderWords words = *this;
        words[header ? Word::footery : Word::headery] = words[header ? Word::pgbrdrfoot : Word::pgbrdrhead] = {};
        return words;
    }
    // Takes over the words that `said` lacks.
    void add(const HeaderWords& more, const HeaderWords& said) noexcept {
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (!more.words_[i].empty() && said.words_[i].empty()) words_[i] = more.words_[i];
        }
    }
    std::u16string text() const {
        std::u16string text;
        for (const std::u16string_view word : words_) text += word;
        return text;
    }

private:
    static constexpr auto first = static_cast<std::size_t>(Word::headery);
    static constexpr auto last = static_cast<std::size_t>(Word::pgbrdrfoot);
    static constexpr std::size_t indexOf(Word word) noexcept { return static_cast<std::size_t>(word) - first; }

    std::array<std::u16string_view, last - first + 1> words_{};
};

}  // namespace velmor
