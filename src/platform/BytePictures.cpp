#include "platform/BytePictures.h"

#include <array>
#include <cstdint>
#include <optional>
#include <utility>

#include "automation/Errors.h"
#include "automation/Variant.h"
#include "text/Compare.h"

namespace velmor::platform {
namespace {

using namespace std::string_view_literals;

// The picture types of the platform's standard pictures.
enum class PictureType : std::int16_t { bitmap = 1, metafile = 2, icon = 3, enhancedMetafile = 4 };

struct Signature {
    std::size_t offset;
    std::string_view bytes;
    PictureType type;
};

constexpr std::array signatures{
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

std::optional<PictureType> pictureType(std::string_view bytes) {
    for (const Signature& signature : signatures) {
        if (bytes.size() > signature.offset && bytes.substr(signature.offset).starts_with(signature.bytes)) {
            return signature.type;
        }
    }
    if (isBitmapFile(bytes)) return PictureType::bitmap;
    return std::nullopt;
}

// Its one property is its type.
class BytePicture : public automation::Object {
public:
    BytePicture(std::string bytes, PictureType type) : bytes_(std::move(bytes)), type_(type) {}

    const std::string& bytes() const noexcept { return bytes_; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override {
        const bool reads = kind == automation::InvokeKind::get || kind == automation::InvokeKind::method;
        if (!reads || !equalIgnoringCase(name, u"Type")) automation::raiseNoSuchMember(name);
        if (!arguments.empty()) throw Error(450);
        return static_cast<std::int16_t>(type_);
    }
    std::u16string typeName() const override { return u"Picture"; }

private:
    std::string bytes_;
    PictureType type_;
};

}  // namespace

automation::ObjectRef BytePictures::load(std::u16string_view path) {
    auto bytes = files_.read(path);
    const auto type = bytes ? pictureType(*bytes) : std::nullopt;
    return type ? std::make_shared<BytePicture>(std::move(*bytes), *type) : nullptr;
}

bool BytePictures::save(const automation::ObjectRef& picture, std::u16string_view path) {
    const auto* known = dynamic_cast<const BytePicture*>(picture.get());
    return known && files_.write(path, known->bytes());
}

}  // namespace velmor::platform
