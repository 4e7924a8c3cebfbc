#include "properties/PictureText.h"

#include "common/ByteText.h"
#include "common/TemporaryFile.h"

namespace velmor {

using automation::ObjectRef;
using automation::Variant;

std::u16string PictureToText(platform::Services& services, const Variant& pvValue) {
    if (automation::typeNameOf(pvValue) != u"Picture") return {};
    const TemporaryFile file(services, u"~kvp", u".tmp");
    if (!file || !services.pictures.save(pvValue.object(), file.path())) return {};
    const auto bytes = services.files.read(file.path());
    return bytes ? u"~RO~Picture\"" + base64(*bytes) + u"\":" : u"";
}

ObjectRef LoadPictureFromText(platform::Services& services, std::string_view bytes) {
    const TemporaryFile file(services, u"~ROP", u".tmp");
    if (!file || !services.files.write(file.path(), bytes)) return nullptr;
    return services.pictures.load(file.path());
}

}  // namespace velmor
