#include "common/Library.h"

#include <optional>
#include <utility>

#include "automation/Convert.h"
#include "automation/DispatchTable.h"
#include "common/Base64.h"
#include "common/Cipher.h"
#include "common/Compression.h"
#include "common/Hexadecimal.h"
#include "common/TemporaryFile.h"
#include "common/TextFile.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Arguments;
using automation::MemberKind;
using automation::Variant;

class kvLibrary : public automation::Object {
public:
    explicit kvLibrary(platform::Services& services) : services_(services) {}

    platform::Services& services() { return services_; }

    Variant invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"kvLibrary"; }

private:
    platform::Services& services_;
};

std::u16string decoded(std::optional<std::u16string> text) {
    if (!text) throw Error(5, u"kvLibrary", u"The text cannot be decoded");
    return std::move(*text);
}

const automation::DispatchTable<kvLibrary>& members() {
    using Self = kvLibrary;
    using Args = Arguments;
    constexpr auto get = MemberKind::get, method = MemberKind::method;
    static const automation::DispatchTable<kvLibrary> table({
        {u"RegistryValue", method, 2, 3,
         [](Self& self, Args& args) -> Variant {
             const auto value = self.services().registry.value(args.text(0), args.text(1));
             return value ? *value : args.textOr(2, u"");
         }},
        {u"ToNumber", method, 1, 1,
         [](Self&, Args& args) -> Variant { return automation::toDouble(args.variant(0)).value_or(0.0); }},
        {u"IsTrue", method, 1, 1, [](Self&, Args& args) -> Variant { return automation::truth(args.variant(0)); }},
        {u"CommonDataFolder", get, 0, 0,
         [](Self& self, Args&) -> Variant { return self.services().folders.commonData(); }},
        {u"TemporaryFolder", get, 0, 0,
         [](Self& self, Args&) -> Variant { return self.services().folders.temporary(); }},
        {u"MachineName", get, 0, 0, [](Self& self, Args&) -> Variant { return self.services().folders.machineName(); }},
        {u"NewGuid", method, 0, 0, [](Self& self, Args&) -> Variant { return self.services().guids.next(); }},
        {u"MakeFolder", method, 1, 1,
         [](Self& self, Args& args) -> Variant { return self.services().files.makeFolder(args.text(0)); }},
        {u"FileExists", method, 1, 1,
         [](Self& self, Args& args) -> Variant { return self.services().files.exists(args.text(0)); }},
        {u"ReadTextFile", method, 1, 1,
         [](Self& self, Args& args) -> Variant {
             return readTextFile(self.services().files, args.text(0)).value_or(std::u16string());
         }},
        {u"AppendText", method, 2, 3,
         [](Self& self, Args& args) -> Variant {
             return appendTextFile(self.services().files, args.text(0), args.text(1), args.boolean(2, true));
         }},
        {u"TemporaryName", method, 2, 2,
         [](Self& self, Args& args) -> Variant {
             return makeTemporaryFile(self.services(), args.text(0), args.text(1)).value_or(std::u16string());
         }},
        {u"Base64", method, 1, 1, [](Self&, Args& args) -> Variant { return base64OfText(args.text(0)); }},
        {u"FromBase64", method, 1, 1,
         [](Self&, Args& args) -> Variant { return decoded(textFromBase64(args.text(0))); }},
        {u"Hexadecimal", method, 1, 1, [](Self&, Args& args) -> Variant { return hexadecimalOfText(args.text(0)); }},
        {u"FromHexadecimal", method, 1, 1,
         [](Self&, Args& args) -> Variant { return decoded(textFromHexadecimal(args.text(0))); }},
        {u"Compress", method, 1, 1, [](Self&, Args& args) -> Variant { return compressedText(args.text(0)); }},
        {u"Decompress", method, 1, 1,
         [](Self&, Args& args) -> Variant { return decoded(textFromCompressed(args.text(0))); }},
        {u"Encipher", method, 2, 2,
         [](Self&, Args& args) -> Variant { return encipheredText(args.text(0), args.text(1)); }},
        {u"Decipher", method, 2, 2,
         [](Self&, Args& args) -> Variant { return decoded(textFromEnciphered(args.text(0), args.text(1))); }},
    });
    return table;
}

Variant kvLibrary::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    return members().invoke(*this, name, kind, arguments);
}

}  // namespace

automation::ObjectRef newLibrary(platform::Services& services) {
    return std::make_shared<kvLibrary>(services);
}

}  // namespace velmor
