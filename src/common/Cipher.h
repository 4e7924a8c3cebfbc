#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Text enciphered with a password, as text: the marker "VelmorCipher1:" and the base64 text of
//
//     salt (16 bytes, random) | nonce (12, random) | enciphered UTF-8 | tag (16)
//
// The key is derived from the password's UTF-8 by PBKDF2 with HMAC-SHA-256 and 600,000 rounds, the
// cipher is AES-256-GCM with the marker as its associated bytes. The marker fixes all of these, so a
// file can demand neither a weaker cipher nor hours of work. Every system reads the text. Both calls
// take about a second, deliberately. A machine without these functions raises 17.

// An empty password raises 5; text of more than 256 MB (as UTF-8) raises 7.
std::u16string encipheredText(std::u16string_view text, std::u16string_view password);

// The text's UTF-8; nothing when the password is wrong or a character was changed, added or removed. White space at
// the end is ignored.
std::optional<std::string> deciphered(std::u16string_view enciphered, std::u16string_view password);

// Whether the text begins with the marker.
bool isEnciphered(std::u16string_view text) noexcept;

}  // namespace velmor
