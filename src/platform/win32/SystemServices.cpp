#include "platform/SystemServices.h"

#include <array>
#include <optional>

#include "platform/RegistryFile.h"
#include "platform/win32/Machine.h"
#include "platform/win32/MachineFiles.h"
#include "platform/win32/MachineObjects.h"
#include "platform/win32/MachinePictures.h"
#include "platform/win32/MachineRegistry.h"
#include "platform/win32/Windows.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {

struct SystemServices::Parts {
    explicit Parts(const SystemOptions& options) : folders(options.componentFolder) {
        if (options.registryFile.empty()) return;
        const auto bytes = files.read(options.registryFile);
        if (!bytes)
            throw Error(53, kErrorSource, u"The registry file \"" + options.registryFile + u"\" cannot be read");
        file.emplace(*bytes);
        for (const auto& warning : file->warnings()) warnings.push_back(options.registryFile + u": " + warning);
    }

    std::optional<RegistryFile> file;
    MachineRegistry machine;
    MachineFiles files;
    MachineClock clock;
    MachineFolders folders;
    MachineObjects objects;
    MachinePictures pictures{files};
    MachineGuids guids;
    std::vector<std::u16string> warnings;
    std::optional<Services> services;
};

SystemServices::SystemServices(const SystemOptions& options) : parts_(std::make_unique<Parts>(options)) {
    Parts& parts = *parts_;
    Registry& registry = parts.file ? static_cast<Registry&>(*parts.file) : parts.machine;
    parts.services.emplace(
        Services{registry, parts.files, parts.clock, parts.folders, parts.objects, parts.pictures, parts.guids});
}

SystemServices::~SystemServices() = default;

Services& SystemServices::services() {
    return *parts_->services;
}

const std::vector<std::u16string>& SystemServices::warnings() const {
    return parts_->warnings;
}

std::string lastSystemError() {
    const DWORD number = GetLastError();
    std::array<wchar_t, 512> text{};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number, 0,
                                        text.data(), static_cast<DWORD>(text.size()), nullptr);
    std::u16string message(reinterpret_cast<const char16_t*>(text.data()), length);
    while (!message.empty() && (message.back() <= u' ' || message.back() == u'.')) message.pop_back();
    return message.empty() ? "error " + std::to_string(number) : toUtf8(message);
}

Services& systemServices() {
    static auto* const instance = new SystemServices;  // objects may use services until the end of the program
    return instance->services();
}

}  // namespace velmor::platform
