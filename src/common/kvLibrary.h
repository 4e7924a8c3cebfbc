#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "automation/Convert.h"
#include "automation/Object.h"
#include "common/ByteText.h"
#include "common/Cipher.h"
#include "common/Compression.h"
#include "common/DocumentText.h"
#include "common/TemporaryFile.h"
#include "common/TextFile.h"
#include "platform/Services.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {

// The public class kvLibrary, the companion library: the Library of a tag, for hosts and handlers. Its only state
// is the services, which must outlive it. Members raise nothing, unless their comments say so, and report failure by
// their results.
class kvLibrary : public automation::Object {
public:
    explicit kvLibrary(platform::Services& services) : services_(services) {}

    // A string value below HKEY_LOCAL_MACHINE.
    std::u16string RegistryValue(std::u16string_view psKey, std::u16string_view psName,
                                 std::u16string_view psDefault) const {
        return services_.registry.value(psKey, psName).value_or(std::u16string(psDefault));
    }
    // 0 if it is not a number
    double ToNumber(const automation::Variant& pvValue) const { return automation::toDouble(pvValue).value_or(0.0); }
    bool IsTrue(const automation::Variant& pvValue) const { return automation::truth(pvValue); }
    std::u16string CommonDataFolder() const { return services_.folders.commonData(); }
    std::u16string TemporaryFolder() const { return services_.folders.temporary(); }
    std::u16string MachineName() const { return services_.folders.machineName(); }
    std::u16string NewGuid() const { return services_.guids.next(); }
    bool MakeFolder(std::u16string_view psPath) const { return services_.files.makeFolder(psPath); }
    bool FileExists(std::u16string_view psPath) const { return services_.files.exists(psPath); }
    // "" when it cannot be read.
    std::u16string ReadTextFile(std::u16string_view psPath) const {
        return readTextFile(services_.files, psPath).value_or(std::u16string());
    }
    bool AppendText(std::u16string_view psPath, std::u16string_view psText, bool pbCreate) const {
        return appendTextFile(services_.files, psPath, psText, pbCreate);
    }
    // The path of a new, empty file; "" on failure.
    std::u16string TemporaryName(std::u16string_view psPrefix, std::u16string_view psExtension) const {
        return makeTemporaryFile(services_, psPrefix, psExtension).value_or(std::u16string());
    }

    // Text is encoded as UTF-8, in which a lone surrogate survives. Text that cannot be decoded raises 5, and so do a
    // wrong password, a changed text and an empty password.
    std::u16string Base64(std::u16string_view psText) const { return base64(toUtf8(psText)); }
    std::u16string FromBase64(std::u16string_view psText) const { return decoded(fromBase64(psText)); }
    std::u16string Hexadecimal(std::u16string_view psText) const { return hexadecimal(toUtf8(psText)); }
    std::u16string FromHexadecimal(std::u16string_view psText) const { return decoded(fromHexadecimal(psText)); }
    // In base64.
    std::u16string Compress(std::u16string_view psText) const { return base64(compressBytes(toUtf8(psText))); }
    std::u16string Decompress(std::u16string_view psText) const {
        const auto compressed = fromBase64(psText);
        return decoded(compressed ? decompressBytes(*compressed) : std::nullopt);
    }
    std::u16string Encipher(std::u16string_view psText, std::u16string_view psPassword) const {
        return encipheredText(psText, psPassword);
    }
    std::u16string Decipher(std::u16string_view psText, std::u16string_view psPassword) const {
        return decoded(deciphered(psText, psPassword));
    }

    // Replaces a file with a finished document as encodeDocument codes it, whole or not at all. A character of a plain
    // text that the ANSI code page lacks raises 5 unless the text is to be UTF-8.
    bool SaveTextFile(std::u16string_view psPath, std::u16string_view psText, bool pbUtf8) const {
        return services_.files.write(psPath, encodeDocument(psText, pbUtf8 ? TextEncoding::utf8 : TextEncoding::ansi));
    }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvLibrary"; }

private:
    static std::u16string decoded(const std::optional<std::string>& utf8) {
        if (!utf8) throw Error(5, u"The text cannot be decoded");
        return fromUtf8(*utf8);
    }

    platform::Services& services_;
};

}  // namespace velmor
