#include "platform/posix/PosixPaths.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

std::optional<std::string> nativePath(std::u16string_view path) {
    if (path.empty() || path.find(u'\0') != path.npos) return std::nullopt;
    return toUtf8(path);
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

// The first entry, in sorted order, that equals the name without regard to case.
std::optional<std::string> entryIgnoringCase(const std::string& folder, const std::string& name) {
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) return std::nullopt;
    const std::u16string sought = fromUtf8(name);
    std::optional<std::string> best;
    while (const dirent* entry = readdir(entries.get())) {
        const std::string_view found = entry->d_name;
        if ((!best || found < *best) && equalIgnoringCase(fromUtf8(found), sought)) best = found;
    }
    return best;
}

// Appends the path's parts to `result`, each in the spelling that exists.
std::string inExistingSpelling(const std::string& path) {
    std::string result;
    std::size_t at = 0;
    bool missing = false;
    while (at < path.size()) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        std::string part = path.substr(at, end - at);
        if (!part.empty() && !missing && !pathExists(result + part)) {
            const auto entry = entryIgnoringCase(result, part);
            missing = !entry;
            if (entry) part = *entry;
        }
        result += part;
        if (end < path.size()) result += '/';
        at = end + 1;
    }
    return result;
}

}  // namespace

bool pathExists(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

std::optional<std::string> pathToRead(std::u16string_view path) {
    auto native = nativePath(path);
    if (!native || pathExists(*native)) return native;
    std::replace(native->begin(), native->end(), '\\', '/');
    return pathExists(*native) ? native : inExistingSpelling(*native);
}

std::optional<std::string> pathToChange(std::u16string_view path) {
    auto native = nativePath(path);
    if (!native || pathExists(*native)) return native;
    std::replace(native->begin(), native->end(), '\\', '/');
    const std::size_t end = native->find_last_not_of('/');
    const std::size_t separator = end == native->npos ? native->npos : native->rfind('/', end);
    if (separator == native->npos) return native;
    std::string folder = native->substr(0, separator + 1);
    if (!pathExists(folder)) folder = inExistingSpelling(folder);
    return folder + native->substr(separator + 1);
}

}  // namespace velmor::platform
