#include "common/kvLibrary.h"

#include <utility>

#include "common/DocumentText.h"
#include "common/TemporaryFile.h"
#include "common/TextFile.h"
#include "text/Error.h"

namespace velmor {

std::u16string kvLibrary::decoded(std::optional<std::u16string> text) {
    if (!text) throw Error(5, u"The text cannot be decoded");
    return std::move(*text);
}

std::u16string kvLibrary::RegistryValue(std::u16string_view psKey, std::u16string_view psName,
                                        std::u16string_view psDefault) const {
    return services_.registry.value(psKey, psName).value_or(std::u16string(psDefault));
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

bool kvLibrary::SaveTextFile(std::u16string_view psPath, std::u16string_view psText, bool pbUtf8) const {
    return services_.files.write(psPath, encodeDocument(psText, pbUtf8 ? TextEncoding::utf8 : TextEncoding::ansi));
}

}  // namespace velmor
