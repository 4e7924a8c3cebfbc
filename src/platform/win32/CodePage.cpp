#include <algorithm>
#include <exception>

#include "platform/win32/Conversions.h"
#include "platform/win32/Windows.h"
#include "text/Encoding.h"

namespace velmor::platform {

namespace {

using Pair = AnsiCodePage::Pair;

// The character of the bytes; 0 when they are not exactly one.
char16_t unitOf(UINT codePage, const char* bytes, int count) {
    wchar_t units[2] = {};
    const int size = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes, count, units, 2);
    return static_cast<char16_t>(size == 1 ? units[0] : 0);
}

// Whether the system writes the character with this one of several codes.
bool isWritten(UINT codePage, const Pair& pair) {
    const auto unit = static_cast<wchar_t>(pair.unit);
    char bytes[2] = {};
    const int size = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, &unit, 1, bytes, 2, nullptr, nullptr);
    const auto byte = [&](int at) { return static_cast<std::uint8_t>(bytes[at]); };
    return size == 2 && pair.code == (byte(0) << 8 | byte(1));
}

void addPairs(UINT codePage, int lead, std::vector<Pair>& pairs) {
    for (int second = 1; second < 256; ++second) {
        const char bytes[] = {static_cast<char>(lead), static_cast<char>(second)};
        const char16_t unit = unitOf(codePage, bytes, 2);
        if (unit >= 0x80) pairs.push_back({static_cast<std::uint16_t>(lead << 8 | second), unit});
    }
}

// A byte without a meaning by itself. In a double-byte code page its number would be that of a letter: it
// becomes a private character that no code page uses.
char16_t unitOfMeaningless(int byte, bool hasPairs) {
    constexpr int firstUnit = 0xF850, firstByte = 0xA0;
    return static_cast<char16_t>(hasPairs && byte >= firstByte ? firstUnit + byte - firstByte : byte);
}

AnsiCodePage read(UINT codePage, bool hasPairs) {
    AnsiCodePage page;
    for (int byte = 0x80; byte < 256; ++byte) {
        const bool isLead = IsDBCSLeadByteEx(codePage, static_cast<BYTE>(byte));
        const char bytes[] = {static_cast<char>(byte)};
        const char16_t unit = isLead ? u'\0' : unitOf(codePage, bytes, 1);
        page.upperHalf[static_cast<std::size_t>(byte - 0x80)] = unit ? unit : unitOfMeaningless(byte, hasPairs);
        if (isLead) addPairs(codePage, byte, page.pairs);
    }
    std::stable_partition(page.pairs.begin(), page.pairs.end(),
                          [&](const Pair& pair) { return isWritten(codePage, pair); });
    return page;
}

}  // namespace

void installCodePage(unsigned codePage) noexcept try {
    const UINT number = codePage ? codePage : GetACP();
    CPINFO info{};
    if (number == CP_UTF8) {
        useUtf8AsAnsi();
    } else if (GetCPInfo(number, &info) && info.MaxCharSize <= 2) {
        useAnsiCodePage(read(number, info.MaxCharSize == 2));
    }
} catch (const std::exception&) {
    // Without memory the code page stays unchanged.
}

}  // namespace velmor::platform
