// Code pages of two bytes a character, compared with the system's conversions.

#include "platform/win32/Conversions.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/Windows.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

std::string written(UINT codePage, wchar_t unit) {
    char bytes[4] = {};
    const int size = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, &unit, 1, bytes, 4, "?", nullptr);
    return std::string(bytes, static_cast<std::size_t>(size));
}

std::wstring read(UINT codePage, const std::string& bytes) {
    wchar_t units[4] = {};
    const int size =
        MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), units, 4);
    return std::wstring(units, static_cast<std::size_t>(size));
}

TEST(CodePage, OfSeveralBytesIsConvertedByTheSystem) {
    for (const UINT codePage : {932U, 936U, 949U, 950U}) {
        installCodePage(codePage);
        int pairs = 0;
        for (unsigned unit = 0xA0; unit < 0xFFFF; ++unit) {
            const std::string bytes = written(codePage, static_cast<wchar_t>(unit));
            if (unit >= 0xF850 && unit < 0xF900) continue;  // for bytes without a meaning
            EXPECT_EQ(toAnsi(std::u16string(1, static_cast<char16_t>(unit))), bytes) << codePage << " " << unit;
            pairs += bytes.size() == 2;
        }
        EXPECT_GT(pairs, 6000) << codePage;
        for (unsigned code = 0x8140; code < 0xFF00; ++code) {
            const std::string bytes{static_cast<char>(code >> 8), static_cast<char>(code)};
            const std::wstring text = read(codePage, bytes);
            if (text.size() != 1 || !IsDBCSLeadByteEx(codePage, static_cast<BYTE>(code >> 8))) continue;
            EXPECT_EQ(fromAnsi(bytes), std::u16string(text.begin(), text.end())) << codePage << " " << code;
        }
        for (const std::string bytes : {"\xE9 ", "\xFF ", "\x81\x20", "\xFE"})
            EXPECT_EQ(toAnsi(fromAnsi(bytes)), bytes);
    }
    installCodePage(65001);
    EXPECT_EQ(toAnsi(u"\u3042"), "\xE3\x81\x82");
    installCodePage();
}

}  // namespace
}  // namespace velmor::platform
