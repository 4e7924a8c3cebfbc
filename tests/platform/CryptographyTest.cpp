#include "platform/Cryptography.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "text/Error.h"

namespace velmor::platform {
namespace {

std::string fromHex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

// Published values: what every implementation gives.
TEST(Cryptography, DerivesThePublishedKeys) {
    const auto derived = [](const char* password, const char* salt, std::uint32_t rounds) {
        CipherKey key;
        deriveKey(key, password, salt, rounds);
        return std::string(key.bytes.begin(), key.bytes.end());
    };
    EXPECT_EQ(derived("passwd", "salt", 1),
              fromHex("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc"));
    EXPECT_EQ(derived("Password", "NaCl", 80000),
              fromHex("4ddcd8f60b98be21830cee5ef22701f9641a4418d04c0414aeff08876b34ab56"));
}

void setKey(CipherKey& key) {
    const std::string bytes = fromHex("feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308");
    std::copy(bytes.begin(), bytes.end(), key.bytes.begin());
}

const std::string nonce = fromHex("cafebabefacedbaddecaf888");
const std::string associated = fromHex("feedfacedeadbeeffeedfacedeadbeefabaddad2");
const std::string plain = fromHex(
    "d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
    "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b39");

TEST(Cryptography, SealsAsPublished) {
    CipherKey key;
    setKey(key);
    const std::string sealed = fromHex(
        "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
        "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662"
        "76fc6ece0f4e1768cddf8853bb2d551b");
    EXPECT_EQ(seal(key, nonce, associated, plain), sealed);
    EXPECT_EQ(unseal(key, nonce, associated, sealed), plain);
    EXPECT_EQ(unseal(key, nonce, {}, seal(key, nonce, {}, {})), "");
}

TEST(Cryptography, RefusesChangedData) {
    CipherKey key;
    setKey(key);
    const std::string sealed = seal(key, nonce, associated, plain);
    for (std::size_t bit = 0; bit < sealed.size() * 8; ++bit) {
        std::string changed = sealed;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        EXPECT_EQ(unseal(key, nonce, associated, changed), std::nullopt) << bit;
    }
    for (const std::string_view cut : {std::string_view(), std::string_view(sealed).substr(1)}) {
        EXPECT_EQ(unseal(key, nonce, associated, cut), std::nullopt);
    }
    EXPECT_EQ(unseal(key, nonce, "other", sealed), std::nullopt);
    EXPECT_EQ(unseal(key, std::string(cipherNonceSize, 'n'), associated, sealed), std::nullopt);
    EXPECT_THROW(seal(key, "short", {}, plain), Error);
    key.bytes[31] ^= 1;
    EXPECT_EQ(unseal(key, nonce, associated, sealed), std::nullopt);
}

TEST(Cryptography, NeverRepeatsRandomBytes) {
    EXPECT_EQ(randomBytes(28).size(), 28U);
    EXPECT_NE(randomBytes(28), randomBytes(28));
}

}  // namespace
}  // namespace velmor::platform
