#pragma once

#include <string>

#include "cli/Documents.h"
#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// A property file as the command line names it. UTF-8.
struct PropertyFile {
    std::string name;          // empty or "-": standard input
    std::string passwordFile;  // its first line is the password; empty: the file is not enciphered
    EncodingChoice encoding = EncodingChoice::automatic;
};

// Reads the file into the collection, whose entries it replaces. White space after the last entry
// is ignored. Throws Failure (exitFile) when something cannot be read, when the text does not
// begin with a property, when the password is wrong, and when a password is given for a text that is
// not enciphered or is missing for one that is.
void readPropertyFile(privProperties& into, const platform::Files& files, const PropertyFile& file);

}  // namespace velmor::cli
