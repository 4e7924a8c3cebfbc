#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor::platform {

// The machine's own cryptography: libcrypto on Linux, CNG on Windows. The same arguments give the
// same bytes on both. A machine without these functions raises 17.

inline constexpr std::size_t cipherNonceSize = 12;
inline constexpr std::size_t cipherTagSize = 16;

// A secret that is erased from memory with this object.
struct CipherKey {
    CipherKey() = default;
    ~CipherKey();
    CipherKey(const CipherKey&) = delete;
    CipherKey& operator=(const CipherKey&) = delete;

    std::array<std::uint8_t, 32> bytes{};
};

// Unpredictable bytes.
std::string randomBytes(std::size_t count);

// PBKDF2 with HMAC-SHA-256. The time is proportional to the rounds, deliberately.
void deriveKey(CipherKey& key, std::string_view password, std::string_view salt, std::uint32_t rounds);

// AES-256-GCM. The sealed bytes are as many as the plain ones, followed by the tag. A nonce
// (cipherNonceSize bytes) must be used only once with a key. The associated bytes are not part of the
// result, but opening needs the same. More than 2^30 plain bytes raise 7.
std::string seal(const CipherKey& key, std::string_view nonce, std::string_view associated, std::string_view plain);

// Nothing when the key, the nonce, the associated bytes or any byte differs from the sealing.
std::optional<std::string> unseal(const CipherKey& key, std::string_view nonce, std::string_view associated,
                                  std::string_view sealed);

// What seal and unseal share, as each system does it: writes as many bytes as `source` has to `target`, and writes the
// tag (cipherTagSize bytes) or compares it. False when it differs. The target is then worth nothing.
enum class CipherStep { seal, unseal };
bool applyCipher(CipherStep step, const CipherKey& key, std::string_view nonce, std::string_view associated,
                 std::string_view source, char* target, char* tag);

}  // namespace velmor::platform
