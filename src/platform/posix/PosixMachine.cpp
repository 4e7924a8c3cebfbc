#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "automation/Convert.h"
#include "platform/BytePictures.h"
#include "platform/Machine.h"
#include "platform/RegistryFile.h"
#include "platform/SystemServices.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

std::u16string environmentVariable(const char* name, std::u16string_view otherwise = u"") {
    const char* value = std::getenv(name);
    return value && *value ? fromUtf8(value) : std::u16string(otherwise);
}

}  // namespace

std::u16string commonDataFolder() {
    return environmentVariable("VELMOR_DATA", u"/var/lib/velmor");
}

std::u16string temporaryFolder() {
    return environmentVariable("TMPDIR", u"/tmp");
}

std::u16string nameOfMachine() {
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, HOST_NAME_MAX) == 0 ? fromUtf8(name) : std::u16string();
}

std::u16string usualRegistryFile(const Files& files) {
    if (auto named = environmentVariable("VELMOR_REGISTRY"); !named.empty()) return named;
    const std::u16string folder = environmentVariable("XDG_CONFIG_HOME", environmentVariable("HOME") + u"/.config");
    for (std::u16string path : {folder + u"/velmor/registry.reg", std::u16string(u"/etc/velmor/registry.reg")}) {
        if (files.exists(path)) return path;
    }
    return {};
}

std::unique_ptr<Registry> machineRegistry() {
    return std::make_unique<RegistryFile>();
}

// Asked for each property that is made: all of one second have the same answer.
automation::Date localTime() {
    thread_local time_t second = -1;
    thread_local automation::Date answer;
    const time_t now = time(nullptr);
    if (now == second) return answer;
    tm local{};
    if (!localtime_r(&now, &local)) return {};
    const auto date = automation::dateFromFields({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                                  local.tm_min, local.tm_sec < 60 ? local.tm_sec : 59});
    second = now;
    return answer = date.value_or(automation::Date{});
}

std::unique_ptr<Pictures> machinePictures(Files& files) {
    return std::make_unique<BytePictures>(files);
}

// The engine may be part of a program, whose name is empty here, or of a shared library.
std::u16string ownFile() {
    Dl_info found{};
    link_map* object = nullptr;
    const bool known =
        dladdr1(reinterpret_cast<void*>(&ownFile), &found, reinterpret_cast<void**>(&object), RTLD_DL_LINKMAP) != 0;
    const char* const name = known && object->l_name[0] != '\0' ? object->l_name : "/proc/self/exe";
    std::error_code failure;
    const auto file = std::filesystem::canonical(name, failure);
    return failure ? std::u16string() : fromUtf8(file.string());
}

std::string lastSystemError() {
    return std::generic_category().message(errno);
}

}  // namespace velmor::platform
