#include "platform/posix/PosixMachine.h"

#include <limits.h>
#include <link.h>
#include <sys/random.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "automation/Convert.h"
#include "platform/GuidText.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor::platform {
namespace {

std::u16string withoutLastSeparator(std::u16string folder) {
    while (folder.size() > 1 && folder.back() == u'/') folder.pop_back();
    return folder;
}

// The file from which the loader mapped an address of this program; empty for the program itself.
struct OwnFile {
    ElfW(Addr) address;
    std::string path;
};

bool holdsAddress(const dl_phdr_info& object, ElfW(Addr) address) {
    for (int i = 0; i < object.dlpi_phnum; ++i) {
        const auto& part = object.dlpi_phdr[i];
        const ElfW(Addr) start = object.dlpi_addr + part.p_vaddr;
        if (part.p_type == PT_LOAD && address >= start && address - start < part.p_memsz) return true;
    }
    return false;
}

int takeOwnFile(dl_phdr_info* object, std::size_t, void* result) {
    auto* own = static_cast<OwnFile*>(result);
    if (!holdsAddress(*object, own->address)) return 0;
    own->path = object->dlpi_name;
    return 1;
}

// The engine may be part of a program or of a shared library that a program loads.
std::u16string ownFolder() {
    OwnFile own{reinterpret_cast<ElfW(Addr)>(&ownFolder), {}};
    dl_iterate_phdr(&takeOwnFile, &own);
    std::error_code failure;
    const auto file = std::filesystem::canonical(own.path.empty() ? "/proc/self/exe" : own.path, failure);
    return failure ? u"." : fromUtf8(file.parent_path().string());
}

}  // namespace

automation::Date PosixClock::now() const {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    tm local{};
    if (!localtime_r(&time.tv_sec, &local)) return {};
    const auto date = automation::dateFromFields({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                                  local.tm_min, local.tm_sec < 60 ? local.tm_sec : 59});
    return date.value_or(automation::Date{});
}

double PosixClock::timer() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

PosixFolders::PosixFolders(std::u16string componentFolder)
    : component_(componentFolder.empty() ? ownFolder() : withoutLastSeparator(std::move(componentFolder))) {}

std::u16string PosixFolders::commonData() const {
    auto folder = environmentVariable("VELMOR_DATA");
    return folder.empty() ? u"/var/lib/velmor" : withoutLastSeparator(std::move(folder));
}

std::u16string PosixFolders::temporary() const {
    auto folder = environmentVariable("TMPDIR");
    return folder.empty() ? u"/tmp" : withoutLastSeparator(std::move(folder));
}

std::u16string PosixFolders::machineName() const {
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, HOST_NAME_MAX) == 0 ? fromUtf8(name) : std::u16string();
}

std::u16string PosixGuids::next() {
    GuidBytes bytes;
    if (getentropy(bytes.data(), bytes.size()) != 0) throw Error(5, kErrorSource, u"No random numbers");
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80);
    return guidText(bytes);
}

std::u16string environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? fromUtf8(value) : std::u16string();
}

}  // namespace velmor::platform
