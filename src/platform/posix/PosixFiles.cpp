#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "platform/Machine.h"
#include "platform/posix/PosixPaths.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

constexpr mode_t newFile = 0666;  // before the umask

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }
    bool close() {
        const int number = std::exchange(number_, -1);
        return number < 0 || ::close(number) == 0;
    }

private:
    int number_;
};

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Reads to the end: the size that the system reports is a hint (some files report none).
std::optional<std::string> readAll(int descriptor, std::size_t expected) {
    std::string bytes;
    bytes.resize(expected + 1);
    std::size_t filled = 0;
    while (true) {
        const ssize_t count = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
        if (filled > Files::largestFile) return std::nullopt;
        if (filled == bytes.size()) bytes.resize(std::max<std::size_t>(bytes.size() * 2, 4096));
    }
    bytes.resize(filled);
    return bytes;
}

// Makes the new name as durable as the bytes. Not every file system can, so this may fail.
void syncFolderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    const std::string folder = end == path.npos ? "." : path.substr(0, end + 1);
    const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor) fsync(descriptor.number());
}

// Made like any new file, so that the umask counts; it takes the permissions of a file that it replaces.
int openBeside(const std::string& path, std::string& temporary) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        temporary = path + "." + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".tmp";
        const int number = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFile);
        if (number >= 0) return number;
        if (errno != EEXIST) break;
    }
    temporary.clear();
    return -1;
}

bool takePermissions(int descriptor, const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) != 0 || fchmod(descriptor, status.st_mode & 07777) == 0;
}

// Blocks the signals that end a program while a temporary file exists, so that none remains.
class SignalHold {
public:
    SignalHold() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ}) sigaddset(&held, signal);
        pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    ~SignalHold() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalHold(const SignalHold&) = delete;
    SignalHold& operator=(const SignalHold&) = delete;

private:
    sigset_t before_;
};

class SystemWriter final : public FileWriter {
public:
    // To a pipe, a device, or a descriptor of this process.
    explicit SystemWriter(int number) : file_(number), isGood_(file_) {}
    // A new file in the same folder takes the name when everything is on the disk.
    explicit SystemWriter(std::string path) : path_(std::move(path)), file_(openBeside(path_, temporary_)) {
        isGood_ = file_ && takePermissions(file_.number(), path_);
    }
    ~SystemWriter() override {
        const int reason = errno;
        if (!temporary_.empty()) unlink(temporary_.c_str());
        errno = reason;
    }

    explicit operator bool() const { return isGood_; }
    bool write(std::string_view bytes) override { return isGood_ = isGood_ && writeAll(file_.number(), bytes); }
    bool finish() override {
        if (path_.empty()) return isGood_ && file_.close();
        if (!isGood_ || fsync(file_.number()) != 0 || !file_.close()) return false;
        if (rename(temporary_.c_str(), path_.c_str()) != 0) return false;
        temporary_.clear();
        syncFolderOf(path_);
        return true;
    }

private:
    const std::string path_;
    std::string temporary_;  // empty once it has taken the name
    Descriptor file_;
    bool isGood_ = false;
};

// The end of a chain of symbolic links, even if it does not exist yet: a path, or one of this process's
// descriptors (/dev/stdout, /dev/fd/63), which may be a pipe or a file opened for appending.
struct Target {
    std::string path;
    int descriptor = -1;
};

int descriptorOf(const std::filesystem::path& link) {
    std::error_code none;
    const auto descriptors = std::filesystem::canonical("/proc/self/fd", none);
    const bool isOne = !none && std::filesystem::canonical(link.parent_path(), none) == descriptors;
    return isOne ? std::atoi(link.filename().c_str()) : -1;
}

Target followLinks(const std::string& path) {
    constexpr int longestChain = 40;
    std::filesystem::path target = path;
    std::error_code none;
    for (int i = 0; i < longestChain && std::filesystem::is_symlink(target, none); ++i) {
        if (const int descriptor = descriptorOf(target); descriptor >= 0) return {{}, descriptor};
        target = target.parent_path() / std::filesystem::read_symlink(target, none);
    }
    return {target.string()};
}

// A rename would replace a read-only file. The system's answer alone is not enough: an administrator may
// write to every file, but not intentionally to one that nobody may write to.
bool isReadOnly(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return false;
    const bool refused = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ||
                         faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0;
    if (refused) errno = EACCES;
    return refused;
}

template <class Place>
std::unique_ptr<FileWriter> opened(const Place& place) {
    auto writer = std::make_unique<SystemWriter>(place);
    return *writer ? std::move(writer) : nullptr;
}

// SystemServices.h describes the paths.
class PosixFiles : public Files {
public:
    bool exists(std::u16string_view path) const override {
        const auto native = pathToRead(path);
        return native && isRegularFile(*native);
    }

    std::optional<std::string> read(std::u16string_view path) const override {
        const auto native = pathToRead(path);
        if (!native) return std::nullopt;
        // Without O_NONBLOCK the open would wait for the other end of a pipe; so below.
        const Descriptor file(open(native->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        struct stat status;
        if (!file || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
        if (static_cast<std::uint64_t>(status.st_size) > Files::largestFile) return std::nullopt;
        return readAll(file.number(), static_cast<std::size_t>(status.st_size));
    }

    // A symbolic link is followed; permissions of a replaced file are kept. Other than
    // regular files (a terminal, a pipe, /dev/null), and descriptors of this process (/dev/stdout), are
    // written to directly. Signals that end the program wait until a regular file is written.
    bool write(std::u16string_view path, std::string_view bytes) override {
        const SignalHold hold;
        return Files::write(path, bytes);
    }

    // Here no signal waits: one that ends the program leaves the temporary file.
    std::unique_ptr<FileWriter> writer(std::u16string_view path) override {
        const auto native = pathToChange(path);
        if (!native) return nullptr;
        const auto [target, descriptor] = followLinks(*native);
        if (descriptor >= 0) return opened(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
        if (isReadOnly(target)) return nullptr;
        if (!pathExists(target) || isRegularFile(target)) return opened(target);
        return opened(open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    }

    bool create(std::u16string_view path) override {
        const auto native = pathToChange(path);
        return native && Descriptor(open(native->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    }

    bool append(std::u16string_view path, std::string_view bytes) override {
        const auto native = pathToChange(path);
        if (!native) return false;
        Descriptor file(
            open(native->c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, newFile));
        return file && writeAll(file.number(), bytes) && file.close();
    }

    bool remove(std::u16string_view path) override {
        const auto native = pathToChange(path);
        return native && unlink(native->c_str()) == 0;
    }

    std::optional<std::u16string> realPath(std::u16string_view path) const override {
        const auto native = pathToRead(path);
        std::error_code failure;
        const auto found = std::filesystem::canonical(native ? *native : std::string(), failure);
        return failure ? std::nullopt : std::optional(fromUtf8(found.string()));
    }

    bool makeFolder(std::u16string_view path) override {
        const auto native = pathToRead(path);
        if (!native) return false;
        std::error_code failure;
        std::filesystem::create_directories(*native, failure);
        return std::filesystem::is_directory(*native, failure);
    }
};

}  // namespace

std::unique_ptr<Files> machineFiles() {
    return std::make_unique<PosixFiles>();
}

}  // namespace velmor::platform
