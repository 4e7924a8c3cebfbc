#include "cli/Streams.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "cli/Failure.h"
#include "platform/SystemServices.h"
#include "text/Encoding.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include "platform/posix/PosixPaths.h"
#endif

namespace velmor::cli {
namespace {

bool isStandardStream(const std::string& name) {
    return name.empty() || name == "-";
}

[[noreturn]] void refuseReading(const std::string& name, const char* reason) {
    throw Failure(exitFile, "cannot read " + inputName(name) + ": " + reason);
}

std::string readStream(std::FILE* stream, const std::string& name) {
    std::string bytes;
    std::array<char, 65536> block{};
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), stream)) {
        bytes.append(block.data(), count);
        if (bytes.size() > platform::Files::largestFile) refuseReading(name, "it is too large");
    }
    if (std::ferror(stream)) refuseReading(name, std::strerror(errno));
    return bytes;
}

// A pipe or a device, such as the one that the shell names for <(...).
bool isStream(const std::filesystem::path& path) {
    std::error_code none;
    return std::filesystem::is_fifo(path, none) || std::filesystem::is_character_file(path, none);
}

std::string readNamedStream(const std::string& name) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(name.c_str(), "rb"), &std::fclose);
    if (!stream) refuseReading(name, std::strerror(errno));
    return readStream(stream.get(), name);
}

void requireOutput(bool written) {
    if (!written) throw Failure(exitFile, "cannot write standard output: " + std::string(std::strerror(errno)));
}

// Finds the file as the engine finds files.
bool isFolder(const std::string& name) {
    std::error_code none;
#ifdef _WIN32
    return std::filesystem::is_directory(fromUtf8(name), none);
#else
    const auto path = platform::pathToRead(fromUtf8(name));
    return path && std::filesystem::is_directory(*path, none);
#endif
}

std::string oneLine(std::string_view message) {
    std::string line(message);
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < 32 || character == 127) character = ' ';
    }
    return line;
}

}  // namespace

void makeStreamsBinary() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

std::string inputName(const std::string& name) {
    return isStandardStream(name) ? "standard input" : "'" + name + "'";
}

std::string readAll(const platform::Files& files, const std::string& name) {
    if (isStandardStream(name)) return readStream(stdin, name);
    const std::u16string path = fromUtf8(name);
    if (auto bytes = files.read(path)) return *std::move(bytes);
    if (isStream(path)) return readNamedStream(name);
    if (isFolder(name)) refuseReading(name, "it is a folder");
    if (!files.exists(path)) throw Failure(exitFile, "file not found: " + inputName(name));
    refuseReading(name, "access is denied, or the file is too large");
}

void writeAll(platform::Files& files, const std::string& name, std::string_view bytes) {
    if (isStandardStream(name)) {
        print(bytes);
        finishPrinting();
    } else if (!files.write(fromUtf8(name), bytes)) {
        throw Failure(exitFile, "cannot write '" + name + "': " + platform::lastSystemError());
    }
}

void print(std::string_view bytes) {
    requireOutput(std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
}

void finishPrinting() {
    requireOutput(std::fflush(stdout) == 0);
}

void requireFolder(const std::string& name) {
    if (!isFolder(name)) throw Failure(exitFile, "folder not found: '" + name + "'");
}

void report(std::string_view message) {
    const std::string line = "velmor: " + oneLine(message) + "\n";
#ifdef _WIN32
    if (_isatty(_fileno(stderr))) {
        const int before = _setmode(_fileno(stderr), _O_U16TEXT);
        std::fputws(reinterpret_cast<const wchar_t*>(fromUtf8(line).c_str()), stderr);
        std::fflush(stderr);
        _setmode(_fileno(stderr), before);
        return;
    }
#endif
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace velmor::cli
