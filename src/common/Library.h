#pragma once

#include "automation/Object.h"
#include "platform/Services.h"

namespace velmor {

// The companion library as an automation object: what hosts and handlers get from a tag's Library.
// The services must outlive it. Members, all called late-bound:
//
//     RegistryValue(key, name [, default = ""])   string value below HKEY_LOCAL_MACHINE
//     ToNumber(value)                             a double; 0 for what is no number
//     IsTrue(value)                               the truth test
//     CommonDataFolder, TemporaryFolder, MachineName, NewGuid
//     MakeFolder(path), FileExists(path)          booleans
//     ReadTextFile(path)                          "" when it cannot be read
//     AppendText(path, text [, create = True])    a boolean
//     TemporaryName(prefix, extension)            the path of a new, empty file; "" on failure
//     Base64(text), FromBase64(text), Hexadecimal(text), FromHexadecimal(text),
//     Compress(text), Decompress(text),           what cannot be decoded raises 5
//     Encipher(text, password), Decipher(text, password)
//                                                 a wrong password and a changed text raise 5
automation::ObjectRef newLibrary(platform::Services& services);

}  // namespace velmor
