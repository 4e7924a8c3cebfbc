#include "common/kvLibrary.h"

#include <optional>
#include <utility>

#include "automation/Convert.h"
#include "automation/DispatchTable.h"
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

using automation::Arguments;
using automation::MemberKind;
using automation::Variant;

std::u16string decoded(std::optional<std::u16string> text) {
    if (!text) throw Error(5, kErrorSource, u"The text cannot be decoded");
    return std::move(*text);
}

const automation::DispatchTable<kvLibrary>& members() {
    using Self = kvLibrary;
    using Args = Arguments;
    constexpr auto get = MemberKind::get, method = MemberKind::method;
    static const automation::DispatchTable<kvLibrary> table({
        {u"RegistryValue", method, 2, 3,
         [](Self& self, Args& args) -> Variant {
             return self.RegistryValue(args.text(0), args.text(1), args.textOr(2, u""));
         }},
        {u"ToNumber", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.ToNumber(args.variant(0)); }},
        {u"IsTrue", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.IsTrue(args.variant(0)); }},
        {u"CommonDataFolder", get, 0, 0, [](Self& self, Args&) -> Variant { return self.CommonDataFolder(); }},
        {u"TemporaryFolder", get, 0, 0, [](Self& self, Args&) -> Variant { return self.TemporaryFolder(); }},
        {u"MachineName", get, 0, 0, [](Self& self, Args&) -> Variant { return self.MachineName(); }},
        {u"NewGuid", method, 0, 0, [](Self& self, Args&) -> Variant { return self.NewGuid(); }},
        {u"MakeFolder", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.MakeFolder(args.text(0)); }},
        {u"FileExists", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.FileExists(args.text(0)); }},
        {u"ReadTextFile", method, 1, 1,
         [](Self& self, Args& args) -> Variant { return self.ReadTextFile(args.text(0)); }},
        {u"AppendText", method, 2, 3,
         [](Self& self, Args& args) -> Variant {
             return self.AppendText(args.text(0), args.text(1), args.boolean(2, true));
         }},
        {u"TemporaryName", method, 2, 2,
         [](Self& self, Args& args) -> Variant { return self.TemporaryName(args.text(0), args.text(1)); }},
        {u"Base64", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.Base64(args.text(0)); }},
        {u"FromBase64", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.FromBase64(args.text(0)); }},
        {u"Hexadecimal", method, 1, 1,
         [](Self& self, Args& args) -> Variant { return self.Hexadecimal(args.text(0)); }},
        {u"FromHexadecimal", method, 1, 1,
         [](Self& self, Args& args) -> Variant { return self.FromHexadecimal(args.text(0)); }},
        {u"Compress", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.Compress(args.text(0)); }},
        {u"Decompress", method, 1, 1, [](Self& self, Args& args) -> Variant { return self.Decompress(args.text(0)); }},
        {u"Encipher", method, 2, 2,
         [](Self& self, Args& args) -> Variant { return self.Encipher(args.text(0), args.text(1)); }},
        {u"Decipher", method, 2, 2,
         [](Self& self, Args& args) -> Variant { return self.Decipher(args.text(0), args.text(1)); }},
        {u"SaveTextFile", method, 2, 3,
         [](Self& self, Args& args) -> Variant {
             return self.SaveTextFile(args.text(0), args.text(1), args.boolean(2, false));
         }},
    });
    return table;
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

Variant kvLibrary::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    return members().invoke(*this, name, kind, arguments);
}

}  // namespace velmor
