#include "text/Encoding.h"

#include <algorithm>
#include <bitset>
#include <cstring>
#include <type_traits>
#include <utility>

#include "text/Characters.h"

namespace velmor {

namespace {

constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

using Pair = AnsiCodePage::Pair;

std::uint8_t byteAt(std::string_view bytes, std::size_t at) noexcept {
    return static_cast<std::uint8_t>(bytes[at]);
}

// A code page, both ways.
class CodePage {
public:
    explicit CodePage(const AnsiCodePage& page)
        : units_(page.upperHalf), pairsByCode_(page.pairs), codesByUnit_(page.pairs) {
        for (std::size_t i = 0; i < units_.size(); ++i) {
            codesByUnit_.push_back({static_cast<std::uint16_t>(0x80 + i), units_[i]});
        }
        std::ranges::stable_sort(codesByUnit_, {}, &Pair::unit);
        std::ranges::sort(pairsByCode_, {}, &Pair::code);
        for (const Pair& pair : pairsByCode_) leads_.set(pair.code >> 8);
    }

    bool hasPairs() const noexcept { return !pairsByCode_.empty(); }
    bool isLead(std::uint8_t byte) const noexcept { return leads_[byte]; }
    char16_t unitOf(std::uint8_t byte) const noexcept { return byte < 0x80 ? byte : units_[byte - 0x80u]; }

    // Null when the two are no character.
    const Pair* pairOf(std::uint8_t lead, std::uint8_t second) const noexcept {
        if (!isLead(lead)) return nullptr;
        const auto code = static_cast<std::uint16_t>(lead << 8 | second);
        const auto found = std::ranges::lower_bound(pairsByCode_, code, {}, &Pair::code);
        return found != pairsByCode_.end() && found->code == code ? &*found : nullptr;
    }
    const Pair* pairAt(std::string_view bytes, std::size_t at) const noexcept {
        return at + 1 < bytes.size() ? pairOf(byteAt(bytes, at), byteAt(bytes, at + 1)) : nullptr;
    }

    std::uint16_t codeOf(char16_t unit) const noexcept {
        if (unit < 0x80) return unit;
        const auto found = std::ranges::lower_bound(codesByUnit_, unit, {}, &Pair::unit);
        return found != codesByUnit_.end() && found->unit == unit ? found->code : std::uint16_t{'?'};
    }

private:
    std::array<char16_t, 128> units_;
    std::vector<Pair> pairsByCode_;
    std::vector<Pair> codesByUnit_;  // of equal units, the code that is written comes first
    std::bitset<256> leads_;
};

struct Ansi {
    CodePage page{westernCodePage()};
    bool isUtf8 = false;
};

Ansi& ansi() noexcept {
    static Ansi current;
    return current;
}

std::u16string fromPairs(const CodePage& page, std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const Pair* const pair = page.pairAt(bytes, at);
        text += pair ? pair->unit : page.unitOf(byteAt(bytes, at));
        at += pair ? 1 : 0;
    }
    return text;
}

std::string toPairs(const CodePage& page, std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() * 2);
    bool afterLead = false;  // a first byte by itself
    for (const char16_t unit : text) {
        const std::uint16_t code = page.codeOf(unit);
        const auto first = static_cast<std::uint8_t>(code > 0xFF ? code >> 8 : code);
        // It must not make one character with what follows.
        if (afterLead && page.pairOf(byteAt(bytes, bytes.size() - 1), first)) bytes.back() = '?';
        bytes += static_cast<char>(first);
        if (code > 0xFF) bytes += static_cast<char>(code & 0xFF);
        afterLead = code <= 0xFF && page.isLead(first);
    }
    return bytes;
}

// Of a character beyond ASCII.
void appendUtf8(std::string& bytes, char32_t code) {
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const unsigned lead = following == 1 ? 0xC0 : following == 2 ? 0xE0 : 0xF0;
    bytes += static_cast<char>(lead | (code >> (6 * following)));
    for (int i = following - 1; i >= 0; --i) bytes += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
}

// One character, or as much of one as there is.
struct Decoded {
    char32_t code;
    std::size_t size;
};

// The bytes that may follow a lead byte: which ones the second may be keeps out overlong forms and
// what lies beyond Unicode. Surrogates may be written.
Decoded decodeUtf8(std::string_view bytes) noexcept {
    const std::uint8_t lead = byteAt(bytes, 0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return {0xFFFD, 1};
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t highest = lead == 0xF4 ? 0x8F : 0xBF;
    char32_t code = lead & (0xFFu >> (size + 1));
    for (std::size_t i = 1; i < size; ++i) {
        if (i == bytes.size()) return {0xFFFD, i};
        const std::uint8_t byte = byteAt(bytes, i);
        if (byte < (i == 1 ? lowest : 0x80) || byte > (i == 1 ? highest : 0xBF)) return {0xFFFD, i};
        code = (code << 6) | (byte & 0x3F);
    }
    return {code, size};
}

// Looks at eight bytes at once.
template <class Char>
std::size_t asciiUnits(std::basic_string_view<Char> text) noexcept {
    constexpr std::size_t step = sizeof(std::uint64_t) / sizeof(Char);
    constexpr std::uint64_t beyond = sizeof(Char) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    std::size_t at = 0;
    for (std::uint64_t word = 0; at + step <= text.size(); at += step) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if ((word & beyond) != 0) break;
    }
    while (at < text.size() && static_cast<std::make_unsigned_t<Char>>(text[at]) < 0x80) ++at;
    return at;
}

// Takes ASCII as it is, and each other unit as the function says.
template <class To, class From, class Convert>
To converted(From from, Convert convert) {
    To to(from.size(), 0);
    for (std::size_t at = 0; at < from.size(); ++at) {
        const std::size_t run = asciiUnits(from.substr(at));
        std::copy_n(from.data() + at, run, to.data() + at);
        at += run;
        if (at < from.size()) to[at] = convert(from[at]);
    }
    return to;
}

}  // namespace

bool isAscii(std::string_view bytes) noexcept {
    return asciiUnits(bytes) == bytes.size();
}

std::size_t asciiLength(std::u16string_view text) noexcept {
    return asciiUnits(text);
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t run = asciiUnits(text.substr(i));
        bytes.resize(bytes.size() + run);
        std::copy_n(text.data() + i, run, bytes.end() - static_cast<std::ptrdiff_t>(run));
        i += run;
        if (i == text.size()) break;
        if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            appendUtf8(bytes, 0x10000 + ((text[i] - 0xD800u) << 10) + (text[i + 1] - 0xDC00u));
            ++i;
        } else {
            appendUtf8(bytes, text[i]);
        }
    }
    return bytes;
}

// No character has more units than bytes.
std::u16string fromUtf8(std::string_view bytes) {
    std::u16string text(bytes.size(), u'\0');
    char16_t* end = text.data();
    while (!bytes.empty()) {
        const std::size_t run = asciiUnits(bytes);
        end = std::copy_n(bytes.data(), run, end);
        bytes.remove_prefix(run);
        if (bytes.empty()) break;
        const auto [code, size] = decodeUtf8(bytes);
        if (code < 0x10000) {
            *end++ = static_cast<char16_t>(code);
        } else {
            *end++ = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            *end++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
        bytes.remove_prefix(size);
    }
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

std::optional<std::u16string> textOfUtf8(std::string_view bytes) {
    std::u16string text = fromUtf8(bytes);
    return toUtf8(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
}

std::u16string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint8_t first = byteAt(bytes, 2 * i), second = byteAt(bytes, 2 * i + 1);
        text[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

std::optional<TextEncoding> markedEncoding(std::string_view bytes) noexcept {
    if (bytes.starts_with("\xef\xbb\xbf")) return TextEncoding::utf8;
    if (bytes.starts_with("\xff\xfe")) return TextEncoding::utf16;
    if (bytes.starts_with("\xfe\xff")) return TextEncoding::utf16BigEndian;
    return std::nullopt;
}

std::optional<std::u16string> decodeMarked(std::string_view bytes) {
    const auto marked = markedEncoding(bytes);
    if (!marked) return std::nullopt;
    if (*marked == TextEncoding::utf8) return fromUtf8(bytes.substr(3));
    return fromUtf16(bytes.substr(2), *marked == TextEncoding::utf16BigEndian);
}

AnsiCodePage westernCodePage() {
    AnsiCodePage page;
    for (std::size_t i = 0; i < page.upperHalf.size(); ++i) {
        page.upperHalf[i] = i < windows1252.size() ? windows1252[i] : static_cast<char16_t>(0x80 + i);
    }
    return page;
}

void useAnsiCodePage(const AnsiCodePage& page) {
    ansi() = {CodePage(page), false};
}

void useUtf8AsAnsi() {
    ansi().isUtf8 = true;
}

std::u16string fromAnsi(std::string_view bytes) {
    if (ansi().isUtf8) return fromUtf8(bytes);
    const CodePage& page = ansi().page;
    if (page.hasPairs()) return fromPairs(page, bytes);
    return converted<std::u16string>(bytes, [&](char byte) { return page.unitOf(static_cast<std::uint8_t>(byte)); });
}

std::string toAnsi(std::u16string_view text) {
    if (ansi().isUtf8) return toUtf8(text);
    const CodePage& page = ansi().page;
    if (page.hasPairs()) return toPairs(page, text);
    return converted<std::string>(text, [&](char16_t unit) { return static_cast<char>(page.codeOf(unit)); });
}

std::uint16_t ansiCode(char16_t unit) noexcept {
    if (!ansi().isUtf8) return ansi().page.codeOf(unit);
    return static_cast<std::uint8_t>(toUtf8({&unit, 1})[0]);
}

}  // namespace velmor
