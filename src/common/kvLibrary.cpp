#include "common/kvLibrary.h"

#include <optional>
#include <utility>

#include "automation/Convert.h"
#include "common/Base64.h"
#include "common/Cipher.h"
#include "common/Compression.h"
#include "common/DocumentText.h"
#include "common/Hexadecimal.h"
#include "common/TemporaryFile.h"
#include "common/TextFile.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor {
namespace {

using automation::Variant;

std::u16string decoded(std::optional<std::u16string> text) {
    if (!text) throw Error(5, kErrorSource, u"The text cannot be decoded");
    return std::move(*text);
}

}  // namespace

std::u16string kvLibrary::RegistryValue(std::u16string_view psKey, std::u16string_view psName,
                                        std::u16string_view psDefault) const {
    return services_.registry.value(psKey, psName).value_or(std::u16string(psDefault));
}

double kvLibrary::ToNumber(const Variant& pvValue) const {
    return automation::toDouble(pvValue).value_or(0.0);
}

bool kvLibrary::IsTrue(const Variant& pvValue) const {
    return automation::truth(pvValue);
}

std::u16string kvLibrary::ReadTextFile(std::u16string_view psPath) const {
    return readTextFile(services_.files, psPath).value_or(std::u16string());
}

bool kvLibrary::AppendText(std::u16string_view psPath, std::u16string_view psText, bool pbCreate) const {
    return appendTextFile(services_.files, psPath, psText, pbCreate);
}

std::u16string kvLibrary::TemporaryName(std::u16string_view psPrefix, std::u16string_view psExtension) const {
    return makeTemporaryFile(services_, psPrefix, psExtension).value_or(std::u16string());
}

std::u16string kvLibrary::Base64(std::u16string_view psText) const {
    return base64OfText(psText);
}

std::u16string kvLibrary::FromBase64(std::u16string_view psText) const {
    return decoded(textFromBase64(psText));
}

std::u16string kvLibrary::Hexadecimal(std::u16string_view psText) const {
    return hexadecimalOfText(psText);
}

std::u16string kvLibrary::FromHexadecimal(std::u16string_view psText) const {
    return decoded(textFromHexadecimal(psText));
}

std::u16string kvLibrary::Compress(std::u16string_view psText) const {
    return compressedText(psText);
}

std::u16string kvLibrary::Decompress(std::u16string_view psText) const {
    return decoded(textFromCompressed(psText));
}

std::u16string kvLibrary::Encipher(std::u16string_view psText, std::u16string_view psPassword) const {
    return encipheredText(psText, psPassword);
}

std::u16string kvLibrary::Decipher(std::u16string_view psText, std::u16string_view psPassword) const {
    return decoded(textFromEnciphered(psText, psPassword));
}

bool kvLibrary::SaveTextFile(std::u16string_view psPath, std::u16string_view psText, bool pbUtf8) const {
    return services_.files.write(psPath, encodeDocument(psText, pbUtf8 ? TextEncoding::utf8 : TextEncoding::ansi));
}

}  // namespace velmor
