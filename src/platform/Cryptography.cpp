#include "platform/Cryptography.h"

#include "text/Error.h"

namespace velmor::platform {
namespace {

constexpr std::size_t largestPlain = std::size_t{1} << 30;

}  // namespace

// Volatile, so that the compiler keeps writes that nobody reads.
CipherKey::~CipherKey() {
    volatile std::uint8_t* const bytes = bytes_.data();
    for (std::size_t i = 0; i < bytes_.size(); ++i) bytes[i] = 0;
}

void requireSealable(std::string_view nonce, std::string_view plain) {
    if (nonce.size() != cipherNonceSize) throw Error(5);
    if (plain.size() > largestPlain) throw Error(7);
}

}  // namespace velmor::platform
