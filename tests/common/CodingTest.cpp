#include <gtest/gtest.h>

#include <random>

#include "Seed.h"
#include "common/ByteText.h"
#include "common/Compression.h"

namespace velmor {
namespace {

using Bytes = std::optional<std::string>;

struct DecodeCase {
    const char16_t* encoded;
    Bytes bytes;
};

// clang-format off
TEST(Base64, FollowsTheStandardsExamples) {
    const std::pair<const char*, const char16_t*> cases[] = {
        {"", u""}, {"f", u"Zg=="}, {"fo", u"Zm8="}, {"foo", u"Zm9v"}, {"foob", u"Zm9vYg=="}, {"fooba", u"Zm9vYmE="},
        {"foobar", u"Zm9vYmFy"}, {"\xfb\xef\xff", u"++//"}};
    for (const auto& [bytes, encoded] : cases) {
        EXPECT_EQ(base64(bytes), encoded);
        EXPECT_EQ(fromBase64(encoded), bytes);
    }
}

TEST(Base64, RefusesInvalidText) {
    const DecodeCase cases[] = {
        {u" Zm\r\n9v\tYg = = ", "foob"}, {u"Zm9vYg", "foob"}, {u"Zm9vYmE", "fooba"}, {u"Zm9vYh==", "foob"}, {u"Z", {}},
        {u"Zm9vY", {}}, {u"Zg=", {}}, {u"Zg===", {}}, {u"Zm9v=", {}}, {u"Zg==Zg==", {}}, {u"=", {}}, {u"====", {}},
        {u"Zm9-", {}}, {u"Zm9v\u0100", {}}, {u"Zm9\u00e9", {}}, {u"Z\xd835", {}}, {u"Zm9v.", {}}};
    for (const DecodeCase& row : cases) EXPECT_EQ(fromBase64(row.encoded), row.bytes) << (&row - cases);
}
// clang-format on

TEST(Hexadecimal, IsUpperCaseAndReadsEither) {
    EXPECT_EQ(hexadecimal(std::string("\0\x9f\xff", 3)), u"009FFF");
    const DecodeCase cases[] = {
        {u"", ""},   {u"4a4B", "JK"}, {u" 4a\r\n4b ", "JK"}, {u"4", {}}, {u"4a4", {}}, {u"4 a", {}},
        {u"4g", {}}, {u"0x41", {}},   {u"\uff14\uff11", {}},
    };
    for (const DecodeCase& row : cases) EXPECT_EQ(fromHexadecimal(row.encoded), row.bytes);
}

TEST(Coding, RestoresRandomBytes) {
    const unsigned seed = testSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        std::string bytes(random() % 3000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random() % (round % 2 ? 256 : 3));
        EXPECT_EQ(fromBase64(base64(bytes)), bytes);
        EXPECT_EQ(fromHexadecimal(hexadecimal(bytes)), bytes);
        std::string compressed = compressBytes(bytes);
        EXPECT_EQ(decompressBytes(compressed), bytes);
        EXPECT_EQ(decompressBytes(compressed.substr(0, random() % compressed.size())), Bytes());
        EXPECT_EQ(decompressBytes(compressed + "x"), Bytes());
        std::string damaged = compressed;
        damaged[random() % damaged.size()] ^= static_cast<char>(1 << random() % 8);
        decompressBytes(damaged);  // refused, except for the few whose checksum still matches
        compressed[compressed.size() - 1 - random() % 4] ^= static_cast<char>(1 << random() % 8);
        EXPECT_EQ(decompressBytes(compressed), Bytes());
    }
}

TEST(Compression, StopsAtTheLimitBeforeTakingMemory) {
    const std::string compressed = compressBytes(std::string(3000000, 'a'));
    EXPECT_EQ(decompressBytes(compressed, 3000000), std::string(3000000, 'a'));
    EXPECT_EQ(decompressBytes(compressed, 2999999), Bytes());
    EXPECT_EQ(decompressBytes(compressBytes(std::string(decodingLimit + 1, '\0'))), Bytes());
    EXPECT_EQ(decompressBytes("plain text"), Bytes());
}

}  // namespace
}  // namespace velmor
