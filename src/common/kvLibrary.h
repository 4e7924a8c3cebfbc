#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "automation/Convert.h"
#include "automation/Object.h"
#include "common/Base64.h"
#include "common/Cipher.h"
#include "common/Compression.h"
#include "common/Hexadecimal.h"
#include "platform/Services.h"

namespace velmor {

// The public class kvLibrary, the companion library: the Library of a tag, for hosts and handlers. Its only state
// is the services, which must outlive it. Members raise nothing, unless their comments say so, and report failure by
// their results.
class kvLibrary : public automation::Object {
public:
    explicit kvLibrary(platform::Services& services) : services_(services) {}

    // A string value below HKEY_LOCAL_MACHINE.
    std::u16string RegistryValue(std::u16string_view psKey, std::u16string_view psName,
                                 std::u16string_view psDefault) const;
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
    std::u16string ReadTextFile(std::u16string_view psPath) const;
    bool AppendText(std::u16string_view psPath, std::u16string_view psText, bool pbCreate) const;
    // The path of a new, empty file; "" on failure.
    std::u16string TemporaryName(std::u16string_view psPrefix, std::u16string_view psExtension) const;

    // Text that cannot be decoded raises 5, and so do a wrong password, a changed text and an empty password.
    std::u16string Base64(std::u16string_view psText) const { return base64OfText(psText); }
    std::u16string FromBase64(std::u16string_view psText) const { return decoded(textFromBase64(psText)); }
    std::u16string Hexadecimal(std::u16string_view psText) const { return hexadecimalOfText(psText); }
    std::u16string FromHexadecimal(std::u16string_view psText) const { return decoded(textFromHexadecimal(psText)); }
    std::u16string Compress(std::u16string_view psText) const { return compressedText(psText); }
    std::u16string Decompress(std::u16string_view psText) const { return decoded(textFromCompressed(psText)); }
    std::u16string Encipher(std::u16string_view psText, std::u16string_view psPassword) const {
        return encipheredText(psText, psPassword);
    }
    std::u16string Decipher(std::u16string_view psText, std::u16string_view psPassword) const {
        return decoded(textFromEnciphered(psText, psPassword));
    }

    // Replaces a file with a finished document as encodeDocument codes it, whole or not at all. A character of a plain
    // text that the ANSI code page lacks raises 5 unless the text is to be UTF-8.
    bool SaveTextFile(std::u16string_view psPath, std::u16string_view psText, bool pbUtf8) const;

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvLibrary"; }

private:
    static std::u16string decoded(std::optional<std::u16string> text);

    platform::Services& services_;
};

}  // namespace velmor
