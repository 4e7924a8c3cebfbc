#include "common/Cipher.h"

#include <gtest/gtest.h>

#include "text/Encoding.h"

namespace velmor {
namespace {

constexpr std::u16string_view samplePassword = u"pass \u00e9\u4e00";

// Each call takes much of a second, so the calls are few.
TEST(Cipher, DeciphersItsTextAndNeverRepeatsAResult) {
    const std::u16string text(u"Ruth \u0141 \U0001f600\0\xd800", 11);
    const std::u16string first = encipheredText(text, samplePassword), second = encipheredText(text, samplePassword);
    EXPECT_TRUE(isEnciphered(first));
    EXPECT_EQ(first.size(), second.size());
    EXPECT_NE(first, second);
    EXPECT_EQ(deciphered(first + u"\r\n", samplePassword), toUtf8(text));
    EXPECT_EQ(deciphered(encipheredText(u"", samplePassword), samplePassword), "");
}

TEST(Cipher, RefusesWrongPasswordsAndChangedTexts) {
    const std::u16string enciphered = encipheredText(u"secret", samplePassword);
    const std::size_t size = enciphered.size();
    ASSERT_EQ(enciphered.back(), u'=');
    for (const auto* const password : {u"", u"pass", u"Pass \u00e9\u4e00"}) {
        EXPECT_EQ(deciphered(enciphered, password), std::nullopt);
    }
    // Marker, salt, nonce, body, tag; bits that base64 ignores; padding.
    for (const std::size_t place : {std::size_t{0}, std::size_t{14}, std::size_t{38}, size - 8, size - 2, size - 1}) {
        std::u16string changed = enciphered;
        ++changed[place];
        EXPECT_EQ(deciphered(changed, samplePassword), std::nullopt) << place;
    }
    EXPECT_EQ(deciphered(std::u16string(enciphered).insert(40, u" "), samplePassword), std::nullopt);
    for (const std::size_t cut : {std::size_t{0}, std::size_t{14}, std::size_t{38}, size - 4, size - 1}) {
        EXPECT_EQ(deciphered(enciphered.substr(0, cut), samplePassword), std::nullopt) << cut;
    }
}

}  // namespace
}  // namespace velmor
