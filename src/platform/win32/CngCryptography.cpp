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

struct DestroyKey {
    void operator()(BCRYPT_KEY_HANDLE key) const { BCryptDestroyKey(key); }
};
using GcmKey = std::unique_ptr<void, DestroyKey>;

// The algorithm must outlive the key.
GcmKey gcmKey(const Algorithm& aes, const CipherKey& key) {
    wchar_t mode[] = BCRYPT_CHAIN_MODE_GCM;
    require(BCryptSetProperty(aes.get(), BCRYPT_CHAINING_MODE, reinterpret_cast<UCHAR*>(mode), sizeof mode, 0));
    auto* const bytes = const_cast<UCHAR*>(key.bytes.data());  // only read
    BCRYPT_KEY_HANDLE handle = nullptr;
    require(BCryptGenerateSymmetricKey(aes.get(), &handle, nullptr, 0, bytes, ULONG{sizeof key.bytes}, 0));
    return GcmKey(handle);
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
                                  key.bytes.data(), static_cast<ULONG>(key.bytes.size()), 0));
}

bool applyCipher(CipherStep step, const CipherKey& key, std::string_view nonce, std::string_view associated,
                 std::string_view source, char* target, char* tag) {
    const Algorithm aes = openAlgorithm(BCRYPT_AES_ALGORITHM);
    const GcmKey gcm = gcmKey(aes, key);
    BCRYPT_AUTHENTICATED_CIPHER_MODE_INFO info;
    BCRYPT_INIT_AUTH_MODE_INFO(info);
    info.pbNonce = raw(nonce);
    info.cbNonce = sizeOf(nonce);
    info.pbAuthData = raw(associated);
    info.cbAuthData = sizeOf(associated);
    info.pbTag = reinterpret_cast<UCHAR*>(tag);
    info.cbTag = static_cast<ULONG>(cipherTagSize);
    ULONG size = 0;
    const auto apply = step == CipherStep::seal ? &BCryptEncrypt : &BCryptDecrypt;
    const NTSTATUS status = apply(gcm.get(), raw(source), sizeOf(source), &info, nullptr, 0,
                                  reinterpret_cast<UCHAR*>(target), sizeOf(source), &size, 0);
    if (status == tagMismatch) return false;
    require(status);
    return true;
}

}  // namespace velmor::platform
