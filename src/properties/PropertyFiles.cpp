// Property files: what the collection saves and loads.

#include <exception>
#include <optional>

#include "common/Cipher.h"
#include "common/TextFile.h"
#include "platform/Services.h"
#include "properties/KeyedItems.h"
#include "properties/privProperties.h"

namespace velmor {
namespace {

// Without the bytes once the text is there: they can be many.
std::optional<std::u16string> textOfFile(const platform::Files& files, std::u16string_view psFileName,
                                         std::u16string_view psPassword) {
    auto text = readTextFile(files, psFileName);
    if (text && !psPassword.empty()) *text = textFromEnciphered(*text, psPassword).value_or(std::u16string());
    return text;
}

}  // namespace

bool privProperties::save(TextForm form, std::u16string_view psFileName, std::u16string_view psPassword) const {
    try {
        std::u16string content = text(form, 0);
        if (!psPassword.empty()) content = encipheredText(content, psPassword);
        return services_.files.write(psFileName, encodeTextFile(content));
    } catch (const std::exception&) {
        return false;
    }
}

bool privProperties::LoadFromFile(std::u16string_view psFileName, std::u16string_view psPassword) {
    try {
        if (!services_.files.exists(psFileName)) return false;
        const auto text = textOfFile(services_.files, psFileName, psPassword);
        if (!text) return false;
        if (psPassword.empty()) {
            Build(*text, false, false, u":");
        } else {
            BuildByDelimited(*text, false, false, u":");
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace velmor
