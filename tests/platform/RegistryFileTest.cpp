#include "platform/RegistryFile.h"

#include <gtest/gtest.h>

#include "Random.h"

namespace velmor::platform {
namespace {

using Text = std::optional<std::u16string>;

std::string utf16(std::u16string_view text, bool bigEndian = false) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

const std::string head = "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\K]\r\n";

// clang-format off
const struct {
    const char* line;  // below the key
    const char16_t* name;
    Text value;
    std::size_t warnings;
} valueRows[] = {
    {"\"n\"=\"v\"", u"N", u"v", 0}, {"@=\"default\"", u"", u"default", 0},
    {" \"n\" = \"v\" ; comment", u"n", u"v", 0},
    {"\"a\\\\b\\\"c\"=\"C:\\\\x \\\"y\\\"\"", u"a\\b\"c", u"C:\\x \"y\"", 0},
    {"\"n\"=\"two\r\nlines\"", u"n", u"two\r\nlines", 0}, {"\"n\"=\"two\\nlines\"", u"n", u"two\nlines", 0},
    {"\"n\"=hex(2):25,00,41,\\\r\n  00,25,00,00,00", u"n", u"%A%", 0}, {"\"n\"=hex(1):41,00", u"n", u"A", 0},
    {"\"n\"=hex(1):", u"n", u"", 0}, {"\"n\"=hex(1):41,0", u"n", u"A", 0}, {"\"n\"=dword:00000001", u"n", {}, 0},
    {"\"n\"=hex:41,00", u"n", {}, 0}, {"\"n\"=hex(7):41,00,00,00", u"n", {}, 0},
    {"\"n\"=\"v\"\r\n\"n\"=dword:1", u"n", {}, 0}, {"\"n\"=\"v\"\r\n\"N\"=-", u"n", {}, 0},
    {"\"n\"=\"old\"\r\n\"N\"=\"new\"", u"n", u"new", 0}, {"; \"n\"=\"v\"", u"n", {}, 0},
    {"\"n\"=\"v\"\r\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\k]", u"n", {}, 0},
    {"[HKEY_CURRENT_USER\\SOFTWARE\\K]\r\n\"n\"=\"v\"", u"n", {}, 0},
    // Invalid lines do not affect the others.
    {"\"n\"=\"never closed\r\n\"m\"=\"v\"", u"m", u"v", 1}, {"\"n\"=\"v\" x\r\n\"m\"=\"v\"", u"m", u"v", 1},
    {"\"n\"=hex(1):4x\r\n\"m\"=\"v\"", u"m", u"v", 1}, {"\"n\"=hex(1):414\r\n\"m\"=\"v\"", u"m", u"v", 1},
    {"\"n\"=hex(1)\r\n\"m\"=\"v:\"", u"m", u"v:", 1}, {"\"n\"=\"", u"n", {}, 1}, {"\"n\"=", u"n", {}, 1},
    {"\"n\"", u"n", {}, 1}, {"\"n", u"n", {}, 1}, {"what is this\r\n\"m\"=\"v\"", u"m", u"v", 1},
    {"[HKEY_LOCAL_MACHINE\\X\r\n\"m\"=\"v\"", u"m", {}, 2}, {"[-HKEY_LOCAL_MACHINE]", u"m", {}, 1},
    {"\"n\"=hex(1):41,00,\\", u"n", u"A", 0},
};
// clang-format on

TEST(RegistryFile, ReadsValues) {
    for (const auto& row : valueRows) {
        const RegistryFile file(head + row.line);
        EXPECT_EQ(file.value(u"software\\k\\", row.name), row.value) << row.line;
        EXPECT_EQ(file.warnings().size(), row.warnings) << row.line;
    }
}

TEST(RegistryFile, ReadsEveryEncoding) {
    const std::u16string text =
        u"Windows Registry Editor Version 5.00\n[HKLM\\SOFTWARE\\K]\n\"\u00fc\"=\"\u20ac \xd800\"\n";
    const std::string ansi = "[HKLM\\SOFTWARE\\K]\n\"\xfc\"=\"\x80\"\n\"h\"=hex(2):80,41,00\n";
    const std::pair<std::string, Text> cases[] = {
        {"\xff\xfe" + utf16(text), u"\u20ac \xd800"},
        {"\xfe\xff" + utf16(text, true), u"\u20ac \xd800"},
        {utf16(text), u"\u20ac \xd800"},
        {"\xff\xfe" + utf16(text) + "x", u"\u20ac \xd800"},
        {"REGEDIT4\n" + ansi, u"\u20ac"},
        {"Windows Registry Editor Version 5.00\n" + ansi, u"\u20ac"},
        {"\xef\xbb\xbf" + head + "\"\xc3\xbc\"=\"v\"", u"v"},
    };
    for (const auto& [bytes, value] : cases) EXPECT_EQ(RegistryFile(bytes).value(u"SOFTWARE\\K", u"\u00dc"), value);
    EXPECT_EQ(RegistryFile("REGEDIT4\n" + ansi).value(u"SOFTWARE\\K", u"h"), u"\u20acA");
}

TEST(RegistryFile, HasTheViewOfA32BitProgram) {
    const RegistryFile file(
        "REGEDIT4\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\K\\Handlers]\n\"A\"=\"narrow\"\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\K\\Handlers]\n\"a\"=\"wide\"\n\"B\"=\"wide\"\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\WOW6432Node\\CLSID\\{1}]\n@=\"class\"\n"
        "[HKEY_CLASSES_ROOT\\X.Y\\CLSID]\n@=\"{1}\"\n");
    EXPECT_EQ(file.value(u"SOFTWARE\\K\\Handlers", u"A"), u"narrow");
    EXPECT_EQ(file.value(u"SOFTWARE\\WOW6432Node\\K\\Handlers", u"A"), u"narrow");
    EXPECT_EQ(file.valueNames(u"SOFTWARE\\K\\Handlers"), (std::vector<std::u16string>{u"A", u"B"}));
    EXPECT_EQ(file.subkeys(u"SOFTWARE\\K"), std::vector<std::u16string>{u"Handlers"});
    EXPECT_EQ(file.value(u"SOFTWARE\\Classes\\CLSID\\{1}", u""), u"class");
    EXPECT_EQ(file.value(u"SOFTWARE\\Classes\\x.y\\clsid", u""), u"{1}");
}

TEST(RegistryFile, RefusesOtherFormats) {
    for (const std::string bytes : {"", " \r\n", "[HKLM\\K]\n@=\"v\"", "\xff\xfe", "\xff", "\0\0\0"}) {
        const RegistryFile file(bytes);
        EXPECT_TRUE(file.subkeys(u"").empty()) << bytes;
    }
    EXPECT_EQ(RegistryFile("{\\rtf1}").warnings().size(), 1U);
}

TEST(RegistryFile, DeletesKeysWithTheirSubkeys) {
    const RegistryFile file(head +
                            "[HKLM\\SOFTWARE\\K\\a\\b]\n\"n\"=\"v\"\n[HKLM\\SOFTWARE\\K!]\n\"n\"=\"v\"\n"
                            "[-HKLM\\SOFTWARE\\K]\n\"n\"=\"ignored\"\n");
    EXPECT_EQ(file.subkeys(u"SOFTWARE"), std::vector<std::u16string>{u"K!"});
    EXPECT_EQ(file.warnings().size(), 1U);
}

TEST(RegistryFile, SurvivesEnormousAndBrokenInput) {
    const std::string deep = "[HKLM\\" + std::string(500000, '\\') + "]\n\"" + std::string(300000, 'n') + "\"=\"v\"\n";
    std::string unclosed = head, continued = head + "@=hex(1):";
    for (int i = 0; i < 50000; ++i) unclosed += "\"a\"=\"\\\n", continued += "41,00,\\\n";
    EXPECT_EQ(RegistryFile(head + deep).warnings().size(), 0U);
    EXPECT_EQ(RegistryFile(unclosed).warnings().size(), 20U);  // the first ones
    EXPECT_EQ(RegistryFile(continued).value(u"SOFTWARE\\K", u""), std::u16string(50000, u'A'));

    const std::string pieces[] = {"\"", "\\",      "\n", "[", "]", "=",  "@",    ":",     ",",       "hex(1)",
                                  "-",  "HKLM\\a", "41", ";", " ", "\r", "\xff", "dword", "WOW6432", "\xd8\x01\xff"};
    Random random;
    for (int round = 0; round < 2000; ++round) RegistryFile(head + random.text<std::string>(pieces, 80)).subkeys(u"");
    for (std::size_t length = 0; length <= head.size(); ++length) RegistryFile(head.substr(0, length));
}

}  // namespace
}  // namespace velmor::platform
