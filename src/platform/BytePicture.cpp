#include "platform/BytePicture.h"

#include <array>
#include <utility>

#include "automation/Variant.h"
#include "text/Compare.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {
namespace {

using namespace std::string_view_literals;

struct Signature {
    std::size_t offset;
    std::string_view bytes;
    PictureType type;
};

constexpr std::array kSignatures{
    Signature{0, "\x89PNG\r\n\x1a\n"sv, PictureType::bitmap},
    Signature{0, "\xff\xd8\xff"sv, PictureType::bitmap},
    Signature{0, "GIF87a"sv, PictureType::bitmap},
    Signature{0, "GIF89a"sv, PictureType::bitmap},
    Signature{0, "\xd7\xcd\xc6\x9a"sv, PictureType::metafile},
    Signature{0, "\x01\x00\x09\x00\x00\x03"sv, PictureType::metafile},
    Signature{0, "\x00\x00\x01\x00"sv, PictureType::icon},
    Signature{40, " EMF"sv, PictureType::enhancedMetafile},
};

// Many texts begin with these two letters: the reserved field and the header's size are checked too.
bool isBitmapFile(std::string_view bytes) {
    return bytes.size() >= 18 && bytes.starts_with("BM") && bytes.substr(6, 4) == "\0\0\0\0"sv &&
           bytes.substr(15, 3) == "\0\0\0"sv;
}

}  // namespace

std::optional<PictureType> pictureType(std::string_view bytes) {
    for (const Signature& signature : kSignatures) {
        if (bytes.size() > signature.offset && bytes.substr(signature.offset).starts_with(signature.bytes)) {
            return signature.type;
        }
    }
    if (isBitmapFile(bytes)) return PictureType::bitmap;
    return std::nullopt;
}

BytePicture::BytePicture(std::string bytes, PictureType type) : bytes_(std::move(bytes)), type_(type) {}

automation::Variant BytePicture::invoke(std::u16string_view name, automation::InvokeKind kind,
                                        std::span<automation::Variant> arguments) {
    const bool reads = kind == automation::InvokeKind::get || kind == automation::InvokeKind::method;
    if (!reads || !equalIgnoringCase(name, u"Type")) {
        throw Error(438, kErrorSource, u"Object doesn't support this property or method: " + std::u16string(name));
    }
    if (!arguments.empty()) throw Error(450, kErrorSource, u"Wrong number of arguments");
    return static_cast<std::int16_t>(type_);
}

automation::ObjectRef pictureFromBytes(std::string bytes) {
    const auto type = pictureType(bytes);
    if (!type) return nullptr;
    return std::make_shared<BytePicture>(std::move(bytes), *type);
}

const std::string* pictureBytes(const automation::ObjectRef& picture) {
    const auto* known = dynamic_cast<const BytePicture*>(picture.get());
    return known ? &known->bytes() : nullptr;
}

}  // namespace velmor::platform
