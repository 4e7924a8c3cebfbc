#include "platform/posix/PosixPaths.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

namespace fs = std::filesystem;

// The first entry, in sorted order, that equals the name without regard to case; the name itself if there is none.
fs::path entryIgnoringCase(const fs::path& folder, const fs::path& name) {
    const std::u16string sought = fromUtf8(name.native());
    std::optional<fs::path> best;
    std::error_code failure;
    fs::directory_iterator entry(folder.empty() ? "." : folder, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        fs::path found = entry->path().filename();
        if (equalIgnoringCase(fromUtf8(found.native()), sought) && (!best || found < *best)) best = std::move(found);
    }
    return best.value_or(name);
}

// The path with each part in the spelling that exists.
fs::path inExistingSpelling(const fs::path& path) {
    fs::path result;
    for (const fs::path& part : path) {
        result /= pathExists(result / part) ? part : entryIgnoringCase(result, part);
    }
    return result;
}

// As it is written if it exists, else in the spelling that `spell` gives it.
template <class Spell>
std::optional<std::string> nativePath(std::u16string_view path, Spell spell) {
    if (path.empty() || path.find(u'\0') != path.npos) return std::nullopt;
    std::string native = toUtf8(path);
    if (pathExists(native)) return native;
    std::replace(native.begin(), native.end(), '\\', '/');
    return spell(native);
}

}  // namespace

bool pathExists(const fs::path& path) {
    std::error_code failure;
    return fs::exists(path, failure);
}

bool isRegularFile(const fs::path& path) {
    std::error_code failure;
    return fs::is_regular_file(path, failure);
}

std::optional<std::string> pathToRead(std::u16string_view path) {
    return nativePath(path, inExistingSpelling);
}

std::optional<std::string> pathToChange(std::u16string_view path) {
    return nativePath(path,
                      [](const fs::path& whole) { return inExistingSpelling(whole.parent_path()) / whole.filename(); });
}

}  // namespace velmor::platform
