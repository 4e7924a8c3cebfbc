#include "platform/SystemServices.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "platform/Cryptography.h"
#include "platform/Machine.h"
#include "platform/RegistryFile.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

class SystemClock : public Clock {
public:
    automation::Date now() const override { return localTime(); }
    double timer() const override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
};

constexpr bool isWindows = std::filesystem::path::preferred_separator == '\\';

// The root of a drive keeps its separator.
std::u16string withoutLastSeparator(std::u16string folder) {
    constexpr std::size_t root = isWindows ? 3 : 1;
    while (folder.size() > root && (folder.back() == u'/' || (isWindows && folder.back() == u'\\'))) folder.pop_back();
    return folder;
}

class SystemFolders : public Folders {
public:
    explicit SystemFolders(std::u16string component) : component_(std::move(component)) {}

    std::u16string commonData() const override { return withoutLastSeparator(commonDataFolder()); }
    std::u16string temporary() const override { return withoutLastSeparator(temporaryFolder()); }
    std::u16string component() const override { return component_; }
    std::u16string machineName() const override { return nameOfMachine(); }
    char16_t separator() const override { return std::filesystem::path::preferred_separator; }

private:
    const std::u16string component_;
};

// Random GUIDs (version 4).
class SystemGuids : public Guids {
public:
    std::u16string next() override {
        std::string bytes = randomBytes(16);
        bytes[6] = static_cast<char>((bytes[6] & 0x0f) | 0x40);
        bytes[8] = static_cast<char>((bytes[8] & 0x3f) | 0x80);
        return guidText(bytes);
    }
};

std::u16string folderOf(const std::u16string& path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    if (separator == path.npos) return u".";
    return separator == 0 ? u"/" : path.substr(0, separator);
}

}  // namespace

bool Files::write(std::u16string_view path, std::string_view bytes) {
    const auto writer = this->writer(path);
    return writer && writer->write(bytes) && writer->finish();
}

struct SystemServices::Parts {
    explicit Parts(const SystemOptions& options)
        : registryFile(options.registryFile.empty() && !options.registryOnlyIfNamed ? usualRegistryFile(*files)
                                                                                    : options.registryFile),
          registry(loadRegistry(options)),
          folders(folderOf(ownFile())),
          objects(machineObjects(*registry, libraryFolders(options))) {}

    std::unique_ptr<Registry> loadRegistry(const SystemOptions& options) {
        if (registryFile.empty() && options.registryOnlyIfNamed) return std::make_unique<RegistryTree>();
        if (registryFile.empty()) return machineRegistry();
        const auto bytes = files->read(registryFile);
        if (!bytes) {
            std::u16string message = u"The registry file \"" + registryFile + u"\" cannot be read";
            if (!options.registryFile.empty()) throw Error(53, std::move(message));
            warnings.push_back(std::move(message));
            return machineRegistry();
        }
        auto loaded = std::make_unique<RegistryFile>(*bytes);
        for (const auto& warning : loaded->warnings()) warnings.push_back(registryFile + u": " + warning);
        return loaded;
    }

    std::vector<std::u16string> libraryFolders(const SystemOptions& options) const {
        std::vector<std::u16string> result = options.handlerFolders;
        if (!registryFile.empty()) result.insert(result.begin(), folderOf(registryFile));
        result.push_back(folders.component());
        return result;
    }

    std::vector<std::u16string> warnings;
    std::unique_ptr<Files> files = machineFiles();
    std::u16string registryFile;  // empty: none
    std::unique_ptr<Registry> registry;
    SystemClock clock;
    SystemFolders folders;
    std::unique_ptr<Objects> objects;
    std::unique_ptr<Pictures> pictures = machinePictures(*files);
    SystemGuids guids;
    Services services{*registry, *files, clock, folders, *objects, *pictures, guids};
};

SystemServices::SystemServices(const SystemOptions& options) : parts_(std::make_unique<Parts>(options)) {}
SystemServices::~SystemServices() = default;

Services& SystemServices::services() {
    return parts_->services;
}

const std::vector<std::u16string>& SystemServices::warnings() const {
    return parts_->warnings;
}

std::u16string guidText(std::string_view bytes) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string text = u"{";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += u'-';
        text += digits[static_cast<std::uint8_t>(bytes[i]) >> 4];
        text += digits[bytes[i] & 15];
    }
    return text + u'}';
}

void requireClassName(std::u16string_view className) {
    const bool isName = className.find_first_of(std::u16string_view(u"{}\\/:!\0", 7)) == className.npos;
    if (className.empty() || !isName) raiseCannotCreate(className, u"it is no class name");
}

void raiseCannotCreate(std::u16string_view className, std::u16string_view reason) {
    throw Error(429, std::u16string(u"Cannot create object \"").append(className) + u"\": " + std::u16string(reason));
}

Services& systemServices() {
    static auto* const instance = new SystemServices;  // objects may use services until the end of the program
    return instance->services();
}

}  // namespace velmor::platform
