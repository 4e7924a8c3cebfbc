#include <openssl/evp.h>
#include <openssl/rand.h>

#include <memory>

#include "platform/Cryptography.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

void require(int outcome) {
    if (outcome != 1) throw Error(17);
}

const unsigned char* raw(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned char* raw(char* bytes) {
    return reinterpret_cast<unsigned char*>(bytes);
}

int sizeOf(std::string_view bytes) {
    return static_cast<int>(bytes.size());
}

}  // namespace

std::string randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    require(RAND_bytes(raw(bytes.data()), static_cast<int>(count)));
    return bytes;
}

void deriveKey(CipherKey& key, std::string_view password, std::string_view salt, std::uint32_t rounds) {
    require(PKCS5_PBKDF2_HMAC(password.data(), sizeOf(password), raw(salt), sizeOf(salt), static_cast<int>(rounds),
                              EVP_sha256(), static_cast<int>(key.bytes.size()), key.bytes.data()));
}

// The library refuses an update without bytes.
bool applyCipher(CipherStep step, const CipherKey& key, std::string_view nonce, std::string_view associated,
                 std::string_view source, char* target, char* tag) {
    const bool seals = step == CipherStep::seal;
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> context(EVP_CIPHER_CTX_new(),
                                                                             &EVP_CIPHER_CTX_free);
    if (!context) throw Error(17);
    const auto update = [&](unsigned char* place, std::string_view bytes) {
        int size = 0;
        require(EVP_CipherUpdate(context.get(), place, &size, raw(bytes), sizeOf(bytes)));
    };
    require(EVP_CipherInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.bytes.data(), raw(nonce), seals));
    update(nullptr, associated);
    constexpr int tagSize = cipherTagSize;
    if (!seals) require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, tagSize, tag));
    if (!source.empty()) update(raw(target), source);
    unsigned char none[16];
    int size = 0;
    const int outcome = EVP_CipherFinal_ex(context.get(), none, &size);
    if (!seals) return outcome == 1;
    require(outcome);
    require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, tagSize, tag));
    return true;
}

}  // namespace velmor::platform
