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

// What a property file holds, deciphered.
struct PropertyText {
    std::u16string text;
    bool isDelimited = false;  // the form of enciphered files

    bool operator==(const PropertyText&) const = default;
};

// Throws Failure (exitFile) when something cannot be read, when the password is wrong, and when a password is given for
// a text that is not enciphered or is missing for one that is.
PropertyText readPropertyText(const platform::Files& files, const PropertyFile& file);

// Reads the text into the collection, whose entries it replaces. White space after the last entry is ignored.
void addPropertyText(privProperties& into, const PropertyText& from);

// Throws Failure (exitFile) when the text, of which the collection was made, does not consist of properties; `name` is
// that of the file.
void requireProperties(const privProperties& properties, const PropertyText& from, const std::string& name);

// All three.
void readPropertyFile(privProperties& into, const platform::Files& files, const PropertyFile& file);

}  // namespace velmor::cli
