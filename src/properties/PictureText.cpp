#include "properties/PictureText.h"

#include "automation/Convert.h"
#include "common/Base64.h"
#include "common/TemporaryFile.h"
#include "text/Error.h"

namespace velmor {

using automation::ObjectRef;
using automation::Variant;

std::u16string PictureToText(platform::Services& services, const Variant& pvValue) {
    if (automation::typeNameOf(pvValue) != u"Picture") return {};
    const TemporaryFile file(services, u"~kvp", u".tmp");
    if (!file) return {};
    try {
        if (!services.pictures.save(pvValue.object(), file.path())) return {};
    } catch (const Error&) {
        return {};
    }
    const auto bytes = services.files.read(file.path());
    if (!bytes) return {};
    std::u16string text = u"~RO~Picture\"";
    appendBase64(text, *bytes);
    return text + u"\":";
}

ObjectRef LoadPictureFromText(platform::Services& services, std::string_view bytes) {
    const TemporaryFile file(services, u"~ROP", u".tmp");
    if (!file || !services.files.write(file.path(), bytes)) return nullptr;
    try {
        return services.pictures.load(file.path());
    } catch (const Error&) {
        return nullptr;
    }
}

}  // namespace velmor
