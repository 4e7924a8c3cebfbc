#include "platform/SystemServices.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/RegistryFile.h"
#include "platform/posix/NativeObjects.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixMachine.h"
#include "platform/posix/PosixPictures.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {
namespace {

struct RegistrySource {
    std::u16string path;  // empty: none
    bool required = false;
};

RegistrySource registrySource(const SystemOptions& options, const Files& files) {
    if (!options.registryFile.empty()) return {options.registryFile, true};
    if (auto named = environmentVariable("VELMOR_REGISTRY"); !named.empty()) return {std::move(named), false};
    std::u16string folder = environmentVariable("XDG_CONFIG_HOME");
    if (folder.empty()) folder = environmentVariable("HOME") + u"/.config";
    for (std::u16string path : {folder + u"/velmor/registry.reg", std::u16string(u"/etc/velmor/registry.reg")}) {
        if (files.exists(path)) return {std::move(path), false};
    }
    return {};
}

struct LoadedRegistry {
    RegistryFile registry;
    std::vector<std::u16string> warnings;
};

LoadedRegistry loadRegistry(const RegistrySource& source, const Files& files) {
    LoadedRegistry loaded;
    if (source.path.empty()) return loaded;
    const auto bytes = files.read(source.path);
    if (!bytes) {
        std::u16string message = u"The registry file \"" + source.path + u"\" cannot be read";
        if (source.required) throw Error(53, kErrorSource, std::move(message));
        loaded.warnings.push_back(std::move(message));
        return loaded;
    }
    loaded.registry = RegistryFile(*bytes);
    for (const auto& warning : loaded.registry.warnings()) {
        loaded.warnings.push_back(source.path + u": " + warning);
    }
    return loaded;
}

std::u16string folderOf(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    if (separator == path.npos) return u".";
    return separator == 0 ? u"/" : path.substr(0, separator);
}

std::vector<std::u16string> libraryFolders(const RegistrySource& source, const SystemOptions& options,
                                           const Folders& folders) {
    std::vector<std::u16string> result;
    if (!source.path.empty()) result.push_back(folderOf(source.path));
    result.insert(result.end(), options.handlerFolders.begin(), options.handlerFolders.end());
    result.push_back(folders.component());
    return result;
}

}  // namespace

struct SystemServices::Parts {
    explicit Parts(const SystemOptions& options)
        : source(registrySource(options, files)),
          loaded(loadRegistry(source, files)),
          folders(options.componentFolder),
          objects(loaded.registry, libraryFolders(source, options, folders)) {}

    PosixFiles files;
    RegistrySource source;
    LoadedRegistry loaded;
    PosixClock clock;
    PosixFolders folders;
    NativeObjects objects;
    PosixPictures pictures{files};
    PosixGuids guids;
    Services services{loaded.registry, files, clock, folders, objects, pictures, guids};
};

SystemServices::SystemServices(const SystemOptions& options) : parts_(std::make_unique<Parts>(options)) {}
SystemServices::~SystemServices() = default;

Services& SystemServices::services() {
    return parts_->services;
}

const std::vector<std::u16string>& SystemServices::warnings() const {
    return parts_->loaded.warnings;
}

std::string lastSystemError() {
    return std::generic_category().message(errno);
}

Services& systemServices() {
    static auto* const instance = new SystemServices;  // objects may use services until the end of the program
    return instance->services();
}

}  // namespace velmor::platform
