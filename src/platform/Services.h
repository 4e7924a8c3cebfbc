#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace velmor::platform {

// Everything that the engine takes from the machine. The programs run on the machine's own services
// (systemServices), tests on an implementation in memory. All calls come from the caller's thread.
// Unless a call says otherwise, it reports failure by its result and leaves everything as it was.

// Read-only view of HKEY_LOCAL_MACHINE. Keys are paths with "\" between the parts, a trailing "\"
// is ignored; keys and names match without regard to case. The program's own view precedes the other.
class Registry {
public:
    virtual ~Registry() = default;
    // The string value (environment variables in it are not filled in); nothing when key or value
    // is absent or no string. An empty name is the key's default value.
    virtual std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const = 0;
    // Names of the string values of a key, in the registry's order, the default value's ("")
    // included when it is set; empty when there is no key.
    virtual std::vector<std::u16string> valueNames(std::u16string_view key) const = 0;
    virtual std::vector<std::u16string> subkeys(std::u16string_view key) const = 0;
};
// The key of the machine's settings, all of them strings.
inline constexpr std::u16string_view optionsKey = u"SOFTWARE\\Korvane\\Quillmark\\Options";

// A file that is written piece by piece and is there only when finish() succeeded: until then the file of that name
// stays as it was. A writer that is not finished leaves nothing. Belongs to one thread at a time.
class FileWriter {
public:
    virtual ~FileWriter() = default;
    virtual bool write(std::string_view bytes) = 0;
    virtual bool finish() = 0;  // the last call
};

// Files by path. On Linux "\" in a path is taken as "/" when the path as it stands does not exist.
class Files {
public:
    static constexpr std::size_t largestFile = (std::size_t{1} << 30) - 1;  // that is read

    virtual ~Files() = default;
    virtual bool exists(std::u16string_view path) const = 0;  // a regular file, not a folder
    // All bytes; nothing when the file is missing, unreadable or larger than largestFile.
    virtual std::optional<std::string> read(std::u16string_view path) const = 0;
    // Replaces the file whole or not at all (a temporary file beside it, then a rename); a
    // read-only file (Linux: one that the caller or nobody may write to) is not replaced.
    virtual bool write(std::u16string_view path, std::string_view bytes);
    // The same for bytes that are not held as a whole; null on failure, and for files that cannot be written so.
    virtual std::unique_ptr<FileWriter> writer(std::u16string_view) { return nullptr; }
    // Makes an empty file in one step; false when there is one of that name, or on failure.
    virtual bool create(std::u16string_view path) { return !exists(path) && write(path, {}); }
    virtual bool append(std::u16string_view path, std::string_view bytes) = 0;  // makes the file
    virtual bool remove(std::u16string_view path) = 0;
    // The file or folder without links, "." and ".."; nothing if it does not exist.
    virtual std::optional<std::u16string> realPath(std::u16string_view path) const = 0;
    virtual bool makeFolder(std::u16string_view path) = 0;  // parents too; true when it is there
};

class Clock {
public:
    virtual ~Clock() = default;
    virtual automation::Date now() const = 0;  // local time, to the second or finer
    virtual double timer() const = 0;          // seconds, monotonic; only differences count
};

class Folders {
public:
    virtual ~Folders() = default;
    virtual std::u16string commonData() const = 0;  // machine-wide application data, no trailing separator
    virtual std::u16string temporary() const = 0;
    virtual std::u16string component() const = 0;  // where the component's (or program's) own file lies
    virtual std::u16string machineName() const = 0;
    virtual char16_t separator() const = 0;
};

// Creates automation objects from registered class names. Only registered class names are
// created: no monikers, no braced class identifiers. Throws Error 429 when it cannot be created.
class Objects {
public:
    virtual ~Objects() = default;
    virtual automation::ObjectRef create(std::u16string_view className) = 0;
};

// The platform's standard pictures (objects whose type name is "Picture").
class Pictures {
public:
    virtual ~Pictures() = default;
    // Nothing when the file holds no picture that the platform can load.
    virtual automation::ObjectRef load(std::u16string_view path) = 0;
    virtual bool save(const automation::ObjectRef& picture, std::u16string_view path) = 0;
};

class Guids {
public:
    virtual ~Guids() = default;
    virtual std::u16string next() = 0;  // braced, 38 characters, upper case, new on every call
};

// A bundle of references; whoever builds it keeps the parts alive longer than every user.
struct Services {
    Registry& registry;
    Files& files;
    Clock& clock;
    Folders& folders;
    Objects& objects;
    Pictures& pictures;
    Guids& guids;
};

}  // namespace velmor::platform
