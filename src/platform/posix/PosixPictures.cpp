#include "platform/posix/PosixPictures.h"

#include <utility>

#include "platform/BytePicture.h"

namespace velmor::platform {

automation::ObjectRef PosixPictures::load(std::u16string_view path) {
    auto bytes = files_.read(path);
    return bytes ? pictureFromBytes(std::move(*bytes)) : nullptr;
}

bool PosixPictures::save(const automation::ObjectRef& picture, std::u16string_view path) {
    const std::string* bytes = pictureBytes(picture);
    return bytes && files_.write(path, *bytes);
}

}  // namespace velmor::platform
