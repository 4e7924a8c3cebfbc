#include "common/TemporaryFile.h"

namespace velmor {
namespace {

constexpr int attempts = 16;  // GUIDs do not collide; repeated failure has another cause

// The braces and hyphens of a GUID are legal in file names but inconvenient to type.
std::u16string uniqueName(platform::Services& services) {
    std::u16string name = services.guids.next();
    std::erase_if(name, [](char16_t unit) { return unit == u'{' || unit == u'-' || unit == u'}'; });
    return name;
}

}  // namespace

std::optional<std::u16string> makeTemporaryFile(platform::Services& services, std::u16string_view psPrefix,
                                                std::u16string_view psExtension) {
    std::u16string stem = services.folders.temporary();
    if (!stem.empty() && stem.back() != services.folders.separator()) stem += services.folders.separator();
    stem += psPrefix;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::u16string path = stem + uniqueName(services);
        path += psExtension;
        if (services.files.create(path)) return path;
        if (!services.files.exists(path)) return std::nullopt;
    }
    return std::nullopt;
}

TemporaryFile::TemporaryFile(platform::Services& services, std::u16string_view psPrefix,
                             std::u16string_view psExtension)
    : files_(services.files), path_(makeTemporaryFile(services, psPrefix, psExtension)) {}

TemporaryFile::~TemporaryFile() {
    if (path_) files_.remove(*path_);
}

}  // namespace velmor
