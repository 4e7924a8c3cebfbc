#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"

namespace velmor::platform {

// Where the machine's services look. Empty entries mean the machine's usual place.
struct SystemOptions {
    // A .reg file to take the registry from.
    //   Linux: without it the file named by the environment variable VELMOR_REGISTRY, else the
    //   first that exists of $XDG_CONFIG_HOME/velmor/registry.reg (without that variable
    //   ~/.config/velmor/registry.reg) and /etc/velmor/registry.reg, else an empty registry.
    //   Windows: without it the machine's registry, as 32-bit programs see it.
    std::u16string registryFile;
    // Taken for the folder of the component's own file (Folders::component).
    std::u16string componentFolder;
    // Linux: where libraries of native objects are looked for, behind the registry file's folder
    // and before the component's (see NativeObject.h).
    std::vector<std::u16string> handlerFolders;
};

// The machine's own services.
//
// Paths on Linux: a path is taken as it stands when such a file exists. Else "\" is taken as "/",
// and each folder that does not exist as written is looked for without regard to case (of several
// the first in sorted order), as templates from Windows need it. Reading looks for the file's own
// name in the same way; writing, appending and removing take the file's own name as written, so
// that no other file is ever changed. A drive letter is an ordinary name.
class SystemServices {
public:
    // Throws Error 53 when options.registryFile cannot be read.
    explicit SystemServices(const SystemOptions& options = {});
    ~SystemServices();
    SystemServices(const SystemServices&) = delete;
    SystemServices& operator=(const SystemServices&) = delete;

    Services& services();

    // What could not be read of the registry file, one line each; empty when all is well.
    const std::vector<std::u16string>& warnings() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

// Why the machine's services refused what this thread asked for last, in the system's words.
std::string lastSystemError();

// One for the whole program with the usual places, made by the first call and never destroyed.
Services& systemServices();

// Makes a class of this program creatable by name, for all SystemServices; a class registered here
// comes before what the machine knows under that name. A null reference or an exception of the
// factory becomes Error 429.
using ObjectFactory = std::function<automation::ObjectRef()>;
void registerClass(std::u16string_view className, ObjectFactory factory);

}  // namespace velmor::platform
