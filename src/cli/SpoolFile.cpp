#include "cli/SpoolFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

#include "cli/Failure.h"

namespace velmor::cli {
namespace {

[[noreturn]] void refuseSpool() {
    throw Failure(exitFile, "cannot use a temporary file: " + std::string(std::strerror(errno)));
}

std::FILE* openSpool(const TemporaryFile& file) {
    if (!file) return nullptr;
    const std::filesystem::path path(file.path());
#ifdef _WIN32
    return _wfopen(path.c_str(), L"w+b");
#else
    return std::fopen(path.c_str(), "w+b");
#endif
}

}  // namespace

SpoolFile::SpoolFile(platform::Services& services)
    : file_(services, u"velmor-", u".tmp"), stream_(openSpool(file_), &std::fclose) {
    if (!stream_) refuseSpool();
}

void SpoolFile::append(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream_.get()) != bytes.size()) refuseSpool();
}

void SpoolFile::rewind() {
    if (std::fflush(stream_.get()) != 0 || std::fseek(stream_.get(), 0, SEEK_SET) != 0) refuseSpool();
}

void SpoolFile::read(char* bytes, std::size_t size) {
    if (std::fread(bytes, 1, size, stream_.get()) != size) refuseSpool();
}

}  // namespace velmor::cli
