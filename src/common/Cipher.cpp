#include "common/Cipher.h"

#include "common/Base64.h"
#include "common/Limits.h"
#include "platform/Cryptography.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::u16string_view kMarker = u"VelmorCipher1:";
constexpr std::size_t kSaltSize = 16;
constexpr std::size_t kHeaderSize = kSaltSize + platform::cipherNonceSize;
constexpr std::uint32_t kRounds = 600'000;
// The longest text that is read, in whole groups of base64.
constexpr std::size_t kLargestPlain = decodingLimit / 3 * 3 - kHeaderSize - platform::cipherTagSize;

std::string markerBytes() {
    return toUtf8(kMarker);
}

void deriveKey(platform::CipherKey& key, std::u16string_view password, std::string_view header) {
    platform::deriveKey(key, toUtf8(password), header.substr(0, kSaltSize), kRounds);
}

// Accepts only the spelling that encipheredText writes: every changed character is detected, even one
// that base64 ignores.
std::optional<std::string> payloadOf(std::u16string_view enciphered) {
    if (!isEnciphered(enciphered)) return std::nullopt;
    enciphered.remove_prefix(kMarker.size());
    enciphered = enciphered.substr(0, enciphered.find_last_not_of(u" \t\r\n") + 1);
    auto bytes = fromBase64(enciphered);
    if (!bytes || bytes->size() < kHeaderSize || base64(*bytes) != enciphered) return std::nullopt;
    return bytes;
}

}  // namespace

std::u16string encipheredText(std::u16string_view text, std::u16string_view password) {
    if (password.empty()) throw Error(5, u"The password is empty");
    const std::string plain = toUtf8(text);
    if (plain.size() > kLargestPlain) throw Error(7);
    std::string payload = platform::randomBytes(kHeaderSize);
    platform::CipherKey key;
    deriveKey(key, password, payload);
    const std::string nonce = payload.substr(kSaltSize);
    payload += platform::seal(key, nonce, markerBytes(), plain);
    return std::u16string(kMarker) + base64(payload);
}

std::optional<std::string> deciphered(std::u16string_view enciphered, std::u16string_view password) {
    if (password.empty()) return std::nullopt;
    const auto payload = payloadOf(enciphered);
    if (!payload) return std::nullopt;
    const std::string_view header = std::string_view(*payload).substr(0, kHeaderSize);
    platform::CipherKey key;
    deriveKey(key, password, header);
    const std::string_view sealed = std::string_view(*payload).substr(kHeaderSize);
    return platform::unseal(key, header.substr(kSaltSize), markerBytes(), sealed);
}

bool isEnciphered(std::u16string_view text) noexcept {
    return text.starts_with(kMarker);
}

}  // namespace velmor
