#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"

namespace velmor::platform {

// The places of the machine's services. Empty entries mean the usual places.
struct SystemOptions {
    // A .reg file that replaces the registry.
    //   Linux: if it is absent, the file named by the environment variable VELMOR_REGISTRY, else the
    //   first that exists of $XDG_CONFIG_HOME/velmor/registry.reg (without that variable
    //   ~/.config/velmor/registry.reg) and /etc/velmor/registry.reg, else an empty registry.
    //   Windows: if it is absent, the machine's registry: the program's own view, then the other.
    std::u16string registryFile;
    // Linux: folders in which libraries of native objects are searched, after the registry file's folder
    // and before the component's (see NativeObject.h).
    std::vector<std::u16string> handlerFolders;
    // Without registryFile the registry is empty.
    bool registryOnlyIfNamed = false;
};

// The machine's own services.
//
// Paths on Linux: a path is used as written if the file exists. Otherwise "\" counts as "/", and each folder
// that does not exist as written is searched without regard to case (of several the first in sorted order),
// for templates from Windows. Reading searches the file's name in the same way; writing, appending and
// removing use the file's name as written, so that no other file is changed. A drive letter is an ordinary
// name.
class SystemServices {
public:
    // Throws Error 53 when options.registryFile cannot be read.
    explicit SystemServices(const SystemOptions& options = {});
    ~SystemServices();
    SystemServices(const SystemServices&) = delete;
    SystemServices& operator=(const SystemServices&) = delete;

    Services& services();

    // The invalid lines of the registry file, a message for each.
    const std::vector<std::u16string>& warnings() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

// The system's message for the last failure of the machine's services on this thread.
std::string lastSystemError();

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case, of 16 bytes in written order.
std::u16string guidText(std::string_view bytes);

// One for the whole program with the usual places, made by the first call and never destroyed.
Services& systemServices();

}  // namespace velmor::platform
