#include <openssl/evp.h>
#include <openssl/rand.h>

#include <memory>

#include "platform/Cryptography.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

struct FreeContext {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, FreeContext>;

void require(int outcome) {
    if (outcome != 1) throw Error(17);
}

const unsigned char* raw(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned char* raw(std::string& bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
}

int sizeOf(std::string_view bytes) {
    return static_cast<int>(bytes.size());
}

// Up to and including the associated bytes.
Context begin(bool sealing, const CipherKey& key, std::string_view nonce, std::string_view associated) {
    Context context(EVP_CIPHER_CTX_new());
    if (!context) throw Error(17);
    require(EVP_CipherInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.bytes().data(), raw(nonce), sealing));
    int size = 0;
    require(EVP_CipherUpdate(context.get(), nullptr, &size, raw(associated), sizeOf(associated)));
    return context;
}

// The library refuses an update without bytes.
void update(const Context& context, std::string& target, std::string_view source) {
    int size = 0;
    if (!source.empty()) require(EVP_CipherUpdate(context.get(), raw(target), &size, raw(source), sizeOf(source)));
}

}  // namespace

std::string randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    require(RAND_bytes(raw(bytes), static_cast<int>(count)));
    return bytes;
}

void deriveKey(CipherKey& key, std::string_view password, std::string_view salt, std::uint32_t rounds) {
    require(PKCS5_PBKDF2_HMAC(password.data(), sizeOf(password), raw(salt), sizeOf(salt), static_cast<int>(rounds),
                              EVP_sha256(), static_cast<int>(key.bytes().size()), key.bytes().data()));
}

std::string seal(const CipherKey& key, std::string_view nonce, std::string_view associated, std::string_view plain) {
    requireSealable(nonce, plain);
    const Context context = begin(true, key, nonce, associated);
    std::string sealed(plain.size() + cipherTagSize, '\0');
    update(context, sealed, plain);
    unsigned char* const end = raw(sealed) + plain.size();
    int size = 0;
    require(EVP_CipherFinal_ex(context.get(), end, &size));
    require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, static_cast<int>(cipherTagSize), end));
    return sealed;
}

std::optional<std::string> unseal(const CipherKey& key, std::string_view nonce, std::string_view associated,
                                  std::string_view sealed) {
    if (sealed.size() < cipherTagSize) return std::nullopt;
    const std::string_view body = sealed.substr(0, sealed.size() - cipherTagSize);
    std::string tag(sealed.substr(body.size()));
    requireSealable(nonce, body);
    const Context context = begin(false, key, nonce, associated);
    require(EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, sizeOf(tag), tag.data()));
    std::string plain(body.size(), '\0');
    update(context, plain, body);
    unsigned char none[16];
    int size = 0;
    if (EVP_CipherFinal_ex(context.get(), none, &size) != 1) return std::nullopt;
    return plain;
}

}  // namespace velmor::platform
