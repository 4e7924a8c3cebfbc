#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Object.h"

namespace velmor::platform {

// The picture types of the platform's standard pictures.
enum class PictureType : std::int16_t { bitmap = 1, metafile = 2, icon = 3, enhancedMetafile = 4 };

// The type by the first bytes: PNG, JPEG, GIF and BMP are bitmaps; WMF (placeable or plain), EMF and
// ICO. Nothing for other bytes. Only the signature is read; the picture is not decoded.
std::optional<PictureType> pictureType(std::string_view bytes);

// A picture that keeps the bytes of its file, so that saving gives the same file. Its one property is
// `Type`.
class BytePicture : public automation::Object {
public:
    BytePicture(std::string bytes, PictureType type);

    const std::string& bytes() const noexcept { return bytes_; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"Picture"; }

private:
    std::string bytes_;
    PictureType type_;
};

// A null reference when the bytes are not a picture.
automation::ObjectRef pictureFromBytes(std::string bytes);

// The bytes of a picture made by pictureFromBytes; null for every other object.
const std::string* pictureBytes(const automation::ObjectRef& picture);

}  // namespace velmor::platform
