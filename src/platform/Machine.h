#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Services.h"

// The parts of SystemServices that each system makes in its own way (posix/, win32/).
namespace velmor::platform {

// The file that is the registry when no other one is asked for; empty for none.
std::u16string usualRegistryFile(const Files& files);
// The registry without such a file: the machine's on Windows, an empty one on Linux.
std::unique_ptr<Registry> machineRegistry();

std::unique_ptr<Files> machineFiles();
automation::Date localTime();
// As in Folders; empty on failure.
std::u16string commonDataFolder();
std::u16string temporaryFolder();
std::u16string nameOfMachine();
// Creates classes of the machine. On Linux libraries that the registry names by a
// relative path, or that were moved, are searched in `folders`, in this order. For any thread.
std::unique_ptr<Objects> machineObjects(const Registry& registry, std::vector<std::u16string> folders);
std::unique_ptr<Pictures> machinePictures(Files& files);

// Raises 429 for what cannot be a registered class name: the empty text, a braced identifier, a moniker, a path.
void requireClassName(std::u16string_view className);
// Error 429 that names the class and the reason.
[[noreturn]] void raiseCannotCreate(std::u16string_view className, std::u16string_view reason);

// The file of the program or library that contains this code; empty on failure.
std::u16string ownFile();

}  // namespace velmor::platform
