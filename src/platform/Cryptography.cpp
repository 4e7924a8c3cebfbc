#include "platform/Cryptography.h"

#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {
namespace {

constexpr std::size_t kLargestPlain = std::size_t{1} << 30;

}  // namespace

// Volatile, so that the compiler keeps writes that nobody reads.
CipherKey::~CipherKey() {
    volatile std::uint8_t* const bytes = bytes_.data();
    for (std::size_t i = 0; i < bytes_.size(); ++i) bytes[i] = 0;
}

void refuseCryptography() {
    throw Error(17, kErrorSource, u"Can't perform requested operation");
}

void requireSealable(std::string_view nonce, std::string_view plain) {
    if (nonce.size() != cipherNonceSize) throw Error(5, kErrorSource, u"Invalid procedure call or argument");
    if (plain.size() > kLargestPlain) throw Error(7, kErrorSource, u"Out of memory");
}

}  // namespace velmor::platform
