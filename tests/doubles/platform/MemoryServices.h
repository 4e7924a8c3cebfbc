#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/BytePictures.h"
#include "platform/RegistryTree.h"
#include "platform/Services.h"

namespace velmor::platform {

// A machine in memory, for tests: it uses no disk, the time changes only on demand, GUIDs are counted, and
// every failure of a real machine can be requested.

class MemoryRegistry : public RegistryTree {
public:
    std::optional<std::u16string> value(std::u16string_view key, std::u16string_view name) const override {
        ++reads;
        return RegistryTree::value(key, name);
    }

    mutable std::size_t reads = 0;  // calls of value()
};

// Paths are compared as Windows does: without regard to case, "/" and "\" alike.
class MemoryFiles : public Files {
public:
    void set(std::u16string_view path, std::string_view bytes);
    std::optional<std::string> get(std::u16string_view path) const;  // also of an unreadable file
    std::vector<std::u16string> paths() const;                       // as written, sorted without regard to case

    void failReading(std::u16string_view path);  // it exists, but read() gives nothing
    void failWriting(std::u16string_view path);  // write, append and remove fail
    bool diskFull = false;                       // every write, append and makeFolder fails

    bool exists(std::u16string_view path) const override;
    std::optional<std::string> read(std::u16string_view path) const override;
    bool write(std::u16string_view path, std::string_view bytes) override;
    bool append(std::u16string_view path, std::string_view bytes) override;
    bool remove(std::u16string_view path) override;
    std::optional<std::u16string> realPath(std::u16string_view path) const override;  // there are no links
    bool makeFolder(std::u16string_view path) override;

    std::vector<std::u16string> folders;  // the arguments of makeFolder, in order

private:
    struct File {
        std::u16string path;
        std::string bytes;
    };
    bool refusesChange(const std::u16string& key) const;

    std::map<std::u16string, File> files_;
    std::set<std::u16string> unreadable_;
    std::set<std::u16string> unwritable_;
};

class MemoryClock : public Clock {
public:
    void set(automation::Date now) { now_ = now; }
    void set(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
    void advance(double seconds);  // moves the time and the timer
    double step = 0;               // seconds by which each read of the timer advances it

    automation::Date now() const override { return now_; }
    double timer() const override;

private:
    automation::Date now_{39512.598692129628};  // 5 March 2008, 14:22:07
    mutable double timer_ = 1000;
};

class MemoryFolders : public Folders {
public:
    std::u16string commonDataFolder = u"C:\\ProgramData";
    std::u16string temporaryFolder = u"C:\\Temp";
    std::u16string componentFolder = u"C:\\Program Files\\Velmor";
    std::u16string machine = u"SRV01";
    char16_t separatorUnit = u'\\';

    std::u16string commonData() const override { return commonDataFolder; }
    std::u16string temporary() const override { return temporaryFolder; }
    std::u16string component() const override { return componentFolder; }
    std::u16string machineName() const override { return machine; }
    char16_t separator() const override { return separatorUnit; }
};

class MemoryObjects : public Objects {
public:
    using Factory = std::function<automation::ObjectRef()>;

    // create() throws the factory's exceptions unchanged; a null reference becomes Error 429.
    void add(std::u16string_view className, Factory factory);
    void fail(std::u16string_view className);  // registered, but each creation raises Error 429

    automation::ObjectRef create(std::u16string_view className) override;

    std::vector<std::u16string> created;  // class names, one for each object made, in order

private:
    std::map<std::u16string, Factory> factories_;
};

class MemoryPictures : public BytePictures {
public:
    using BytePictures::BytePictures;
    bool failLoading = false;
    bool failSaving = false;

    automation::ObjectRef load(std::u16string_view path) override {
        return failLoading ? nullptr : BytePictures::load(path);
    }
    bool save(const automation::ObjectRef& picture, std::u16string_view path) override {
        return !failSaving && BytePictures::save(picture, path);
    }
};

// {00000001-0000-4000-8000-000000000000}, {00000002-...: counted from 1.
class MemoryGuids : public Guids {
public:
    std::u16string next() override;

private:
    std::atomic<std::uint32_t> count_ = 0;  // two threads may join documents
};

struct MemoryParts {
    MemoryRegistry registry;
    MemoryFiles files;
    MemoryClock clock;
    MemoryFolders folders;
    MemoryObjects objects;
    MemoryPictures pictures{files};
    MemoryGuids guids;
};

// A Services whose members are the parts in memory. It must outlive its users.
struct MemoryServices : MemoryParts, Services {
    MemoryServices();
    MemoryServices(const MemoryServices&) = delete;
    MemoryServices& operator=(const MemoryServices&) = delete;

    Services& services() { return *this; }

    using MemoryParts::clock;
    using MemoryParts::files;
    using MemoryParts::folders;
    using MemoryParts::guids;
    using MemoryParts::objects;
    using MemoryParts::pictures;
    using MemoryParts::registry;
};

}  // namespace velmor::platform
