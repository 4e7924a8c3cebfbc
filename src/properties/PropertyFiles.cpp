// Property files: what the collection saves and loads.

#include <exception>
#include <string>

#include "common/Cipher.h"
#include "common/TextFile.h"
#include "platform/Services.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace velmor {

bool privProperties::save(TextForm form, std::u16string_view psFileName, std::u16string_view psPassword) const try {
    std::u16string content = text(form, 0);
    if (!psPassword.empty()) content = encipheredText(content, psPassword);
    return services_.files.write(psFileName, encodeTextFile(content));
} catch (const std::exception&) {
    return false;
}

bool privProperties::LoadFromFile(std::u16string_view psFileName, std::u16string_view psPassword) try {
    auto text = readTextFile(services_.files, psFileName);
    if (!text) return false;
    if (!psPassword.empty()) text = fromUtf8(deciphered(*text, psPassword).value_or(std::string()));
    Build(*text);
    return true;
} catch (const std::exception&) {
    return false;
}

}  // namespace velmor
