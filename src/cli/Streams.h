#pragma once

#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor::cli {

// Makes the standard streams binary: Windows must not change line ends of documents.
void makeStreamsBinary();

// The name of an input in messages.
std::string inputName(const std::string& name);

// All bytes of a file, a pipe or a device, or of standard input when the name is "-" or empty. Throws
// Failure (exitFile).
std::string readAll(const platform::Files& files, const std::string& name);

// Writes a file whole or not at all, or standard output when the name is "-" or empty. Throws
// Failure (exitFile).
void writeAll(platform::Files& files, const std::string& name, std::string_view bytes);

// Writes to standard output piece by piece, for output that is not held as a whole; finishPrinting ends
// it. Both throw Failure (exitFile).
void print(std::string_view bytes);
void finishPrinting();

// Throws Failure (exitFile) unless the folder exists.
void requireFolder(const std::string& name);

// One line "velmor: <message>" on standard error. Line ends and other control characters within the
// message become blanks. UTF-8; a Windows console shows it as it is meant.
void report(std::string_view message);

}  // namespace velmor::cli
