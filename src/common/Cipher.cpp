#include "common/Cipher.h"

#include "common/ByteText.h"
#include "common/Limits.h"
#include "platform/Cryptography.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::u16string_view marker = u"VelmorCipher1:";
constexpr std::size_t saltSize = 16;
constexpr std::size_t headerSize = saltSize + platform::cipherNonceSize;
constexpr std::uint32_t rounds = 600'000;
// The longest text that is read, in whole groups of base64.
constexpr std::size_t largestPlain = decodingLimit / 3 * 3 - headerSize - platform::cipherTagSize;

std::string markerBytes() {
    return toUtf8(marker);
}

void deriveKey(platform::CipherKey& key, std::u16string_view password, std::string_view header) {
    platform::deriveKey(key, toUtf8(password), header.substr(0, saltSize), rounds);
}

// Accepts only the spelling that encipheredText writes: every changed character is detected, even one
// that base64 ignores.
std::optional<std::string> payloadOf(std::u16string_view enciphered) {
    if (!isEnciphered(enciphered)) return std::nullopt;
    enciphered.remove_prefix(marker.size());
    enciphered = enciphered.substr(0, enciphered.find_last_not_of(u" \t\r\n") + 1);
    auto bytes = fromBase64(enciphered);
    if (!bytes || bytes->size() < headerSize || base64(*bytes) != enciphered) return std::nullopt;
    return bytes;
}

}  // namespace

std::u16string encipheredText(std::u16string_view text, std::u16string_view password) {
    if (password.empty()) throw Error(5, u"The password is empty");
    const std::string plain = toUtf8(text);
    if (plain.size() > largestPlain) throw Error(7);
    std::string payload = platform::randomBytes(headerSize);
    platform::CipherKey key;
    deriveKey(key, password, payload);
    const std::string nonce = payload.substr(saltSize);
    payload += platform::seal(key, nonce, markerBytes(), plain);
    return std::u16string(marker) + base64(payload);
}

std::optional<std::string> deciphered(std::u16string_view enciphered, std::u16string_view password) {
    if (password.empty()) return std::nullopt;
    const auto payload = payloadOf(enciphered);
    if (!payload) return std::nullopt;
    const std::string_view header = std::string_view(*payload).substr(0, headerSize);
    platform::CipherKey key;
    deriveKey(key, password, header);
    const std::string_view sealed = std::string_view(*payload).substr(headerSize);
    return platform::unseal(key, header.substr(saltSize), markerBytes(), sealed);
}

bool isEnciphered(std::u16string_view text) noexcept {
    return text.starts_with(marker);
}

}  // namespace velmor
