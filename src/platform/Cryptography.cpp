#include "platform/Cryptography.h"

#include <utility>

#include "text/Error.h"

namespace velmor::platform {
namespace {

constexpr std::size_t largestPlain = std::size_t{1} << 30;

// Raises 7 beyond the limit, 5 for a nonce of the wrong size.
void requireSealable(std::string_view nonce, std::string_view plain) {
    if (nonce.size() != cipherNonceSize) throw Error(5);
    if (plain.size() > largestPlain) throw Error(7);
}

}  // namespace

// Volatile, so that the compiler keeps writes that nobody reads.
CipherKey::~CipherKey() {
    volatile std::uint8_t* const place = bytes.data();
    for (std::size_t i = 0; i < bytes.size(); ++i) place[i] = 0;
}

std::string seal(const CipherKey& key, std::string_view nonce, std::string_view associated, std::string_view plain) {
    requireSealable(nonce, plain);
    std::string sealed(plain.size() + cipherTagSize, '\0');
    applyCipher(CipherStep::seal, key, nonce, associated, plain, sealed.data(), sealed.data() + plain.size());
    return sealed;
}

std::optional<std::string> unseal(const CipherKey& key, std::string_view nonce, std::string_view associated,
                                  std::string_view sealed) {
    if (sealed.size() < cipherTagSize) return std::nullopt;
    const std::string_view body = sealed.substr(0, sealed.size() - cipherTagSize);
    requireSealable(nonce, body);
    std::string plain(body.size(), '\0'), tag(sealed.substr(body.size()));
    const bool isGenuine = applyCipher(CipherStep::unseal, key, nonce, associated, body, plain.data(), tag.data());
    return isGenuine ? std::optional(std::move(plain)) : std::nullopt;
}

}  // namespace velmor::platform
