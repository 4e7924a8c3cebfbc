#include <memory>

#include "platform/Cryptography.h"
#include "platform/win32/Windows.h"
#include "text/Error.h"

// Needs Windows.h before it.
#include <bcrypt.h>

namespace velmor::platform {
namespace {

constexpr NTSTATUS tagMismatch = static_cast<NTSTATUS>(0xC000A002);

void require(NTSTATUS status) {
    if (status < 0) throw Error(17);
}

// CNG takes input by a non-const pointer, and does not accept null for no input.
UCHAR* raw(std::string_view bytes) {
    static char nothing = 0;
    return reinterpret_cast<UCHAR*>(bytes.empty() ? &nothing : const_cast<char*>(bytes.data()));
}

UCHAR* raw(std::string& bytes) {
    return reinterpret_cast<UCHAR*>(bytes.data());
}

ULONG sizeOf(std::string_view bytes) {
    return static_cast<ULONG>(bytes.size());
}

struct CloseAlgorithm {
    void operator()(BCRYPT_ALG_HANDLE algorithm) const { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
using Algorithm = std::unique_ptr<void, CloseAlgorithm>;

Algorithm openAlgorithm(const wchar_t* name, ULONG flags = 0) {
    BCRYPT_ALG_HANDLE handle = nullptr;
    require(BCryptOpenAlgorithmProvider(&handle, name, nullptr, flags));
    return Algorithm(handle);
}

class GcmKey {
public:
    explicit GcmKey(const CipherKey& key) : algorithm_(openAlgorithm(BCRYPT_AES_ALGORITHM)) {
        wchar_t mode[] = BCRYPT_CHAIN_MODE_GCM;
        require(
            BCryptSetProperty(algorithm_.get(), BCRYPT_CHAINING_MODE, reinterpret_cast<UCHAR*>(mode), sizeof mode, 0));
        auto* const bytes = const_cast<UCHAR*>(key.bytes().data());  // only read
        const auto size = static_cast<ULONG>(key.bytes().size());
        require(BCryptGenerateSymmetricKey(algorithm_.get(), &handle_, nullptr, 0, bytes, size, 0));
    }
    ~GcmKey() { BCryptDestroyKey(handle_); }
    GcmKey(const GcmKey&) = delete;
    GcmKey& operator=(const GcmKey&) = delete;
    BCRYPT_KEY_HANDLE get() const { return handle_; }

private:
    const Algorithm algorithm_;
    BCRYPT_KEY_HANDLE handle_ = nullptr;
};

BCRYPT_AUTHENTICATED_CIPHER_MODE_INFO authentication(std::string_view nonce, std::string_view associated, UCHAR* tag) {
    BCRYPT_AUTHENTICATED_CIPHER_MODE_INFO info;
    BCRYPT_INIT_AUTH_MODE_INFO(info);
    info.pbNonce = raw(nonce);
    info.cbNonce = sizeOf(nonce);
    info.pbAuthData = raw(associated);
    info.cbAuthData = sizeOf(associated);
    info.pbTag = tag;
    info.cbTag = static_cast<ULONG>(cipherTagSize);
    return info;
}

}  // namespace

std::string randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    require(BCryptGenRandom(nullptr, raw(bytes), sizeOf(bytes), BCRYPT_USE_SYSTEM_PREFERRED_RNG));
    return bytes;
}

void deriveKey(CipherKey& key, std::string_view password, std::string_view salt, std::uint32_t rounds) {
    const Algorithm hmac = openAlgorithm(BCRYPT_SHA256_ALGORITHM, BCRYPT_ALG_HANDLE_HMAC_FLAG);
    require(BCryptDeriveKeyPBKDF2(hmac.get(), raw(password), sizeOf(password), raw(salt), sizeOf(salt), rounds,
                                  key.bytes().data(), static_cast<ULONG>(key.bytes().size()), 0));
}

std::string seal(const CipherKey& key, std::string_view nonce, std::string_view associated, std::string_view plain) {
    requireSealable(nonce, plain);
    const GcmKey gcm(key);
    std::string sealed(plain.size() + cipherTagSize, '\0');
    auto info = authentication(nonce, associated, raw(sealed) + plain.size());
    ULONG size = 0;
    require(
        BCryptEncrypt(gcm.get(), raw(plain), sizeOf(plain), &info, nullptr, 0, raw(sealed), sizeOf(plain), &size, 0));
    return sealed;
}

std::optional<std::string> unseal(const CipherKey& key, std::string_view nonce, std::string_view associated,
                                  std::string_view sealed) {
    if (sealed.size() < cipherTagSize) return std::nullopt;
    const std::string_view body = sealed.substr(0, sealed.size() - cipherTagSize);
    requireSealable(nonce, body);
    const GcmKey gcm(key);
    std::string tag(sealed.substr(body.size()));
    auto info = authentication(nonce, associated, raw(tag));
    std::string plain(body.size(), '\0');
    ULONG size = 0;
    const NTSTATUS status =
        BCryptDecrypt(gcm.get(), raw(body), sizeOf(body), &info, nullptr, 0, raw(plain), sizeOf(body), &size, 0);
    if (status == tagMismatch) return std::nullopt;
    require(status);
    return plain;
}

}  // namespace velmor::platform
