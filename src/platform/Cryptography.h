#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmor::platform {

// The machine's own cryptography: libcrypto on Linux, CNG on Windows. The same arguments give the
// same bytes on both. What the machine cannot do raises 17.

inline constexpr std::size_t cipherNonceSize = 12;
inline constexpr std::size_t cipherTagSize = 16;

// Lasts no longer in memory than this object.
class CipherKey {
public:
    CipherKey() = default;
    ~CipherKey();
    CipherKey(const CipherKey&) = delete;
    CipherKey& operator=(const CipherKey&) = delete;

    std::array<std::uint8_t, 32>& bytes() noexcept { return bytes_; }
    const std::array<std::uint8_t, 32>& bytes() const noexcept { return bytes_; }

private:
    std::array<std::uint8_t, 32> bytes_{};
};

// Bytes that nobody can foretell.
std::string randomBytes(std::size_t count);

// PBKDF2 with HMAC-SHA-256. Costs time in proportion to the rounds, on purpose.
void deriveKey(CipherKey& key, std::string_view password, std::string_view salt, std::uint32_t rounds);

// AES-256-GCM. The sealed bytes are as many as the plain ones, and the tag behind them. A nonce
// (cipherNonceSize bytes) serves once for a key. The associated bytes are not in the outcome, but
// must be the same again. More than 2^30 plain bytes raise 7.
std::string seal(const CipherKey& key, std::string_view nonce, std::string_view associated, std::string_view plain);

// Nothing when the key, the nonce, the associated bytes or any byte is not that of the sealing.
std::optional<std::string> unseal(const CipherKey& key, std::string_view nonce, std::string_view associated,
                                  std::string_view sealed);

// For the two implementations: raises 17.
[[noreturn]] void refuseCryptography();
// Raises 7 beyond the limit, 5 for a nonce of another size.
void requireSealable(std::string_view nonce, std::string_view plain);

}  // namespace velmor::platform
