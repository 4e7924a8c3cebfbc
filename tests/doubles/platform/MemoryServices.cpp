#include "platform/MemoryServices.h"

#include <algorithm>
#include <utility>

#include "automation/Convert.h"
#include "platform/Machine.h"
#include "platform/SystemServices.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor::platform {

namespace {

std::u16string fileKey(std::u16string_view path) {
    std::u16string key = lowerCase(path);
    std::replace(key.begin(), key.end(), u'/', u'\\');
    return key;
}

}  // namespace

void MemoryFiles::set(std::u16string_view path, std::string_view bytes) {
    files_[fileKey(path)] = {std::u16string(path), std::string(bytes)};
}

std::optional<std::string> MemoryFiles::get(std::u16string_view path) const {
    const auto place = files_.find(fileKey(path));
    return place == files_.end() ? std::nullopt : std::optional(place->second.bytes);
}

std::vector<std::u16string> MemoryFiles::paths() const {
    std::vector<std::u16string> result;
    for (const auto& [key, file] : files_) result.push_back(file.path);
    return result;
}

void MemoryFiles::failReading(std::u16string_view path) {
    unreadable_.insert(fileKey(path));
}
void MemoryFiles::failWriting(std::u16string_view path) {
    unwritable_.insert(fileKey(path));
}

bool MemoryFiles::refusesChange(const std::u16string& key) const {
    return unwritable_.contains(key);
}

bool MemoryFiles::exists(std::u16string_view path) const {
    return files_.contains(fileKey(path));
}

std::optional<std::string> MemoryFiles::read(std::u16string_view path) const {
    return unreadable_.contains(fileKey(path)) ? std::nullopt : get(path);
}

bool MemoryFiles::write(std::u16string_view path, std::string_view bytes) {
    if (diskFull || path.empty() || refusesChange(fileKey(path))) return false;
    set(path, bytes);
    return true;
}

bool MemoryFiles::append(std::u16string_view path, std::string_view bytes) {
    const std::u16string key = fileKey(path);
    if (diskFull || path.empty() || refusesChange(key)) return false;
    File& file = files_[key];
    if (file.path.empty()) file.path = path;
    file.bytes += bytes;
    return true;
}

bool MemoryFiles::remove(std::u16string_view path) {
    const std::u16string key = fileKey(path);
    return !refusesChange(key) && files_.erase(key) > 0;
}

std::optional<std::u16string> MemoryFiles::realPath(std::u16string_view path) const {
    std::vector<std::u16string> parts;
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find_first_of(u"\\/", start), path.size());
        const std::u16string part = upperCase(path.substr(start, end - start));
        if (part == u".." && !parts.empty()) parts.pop_back();
        if (part != u".." && part != u"." && (part != u"" || parts.empty())) parts.push_back(part);
        start = end + 1;
    }
    std::u16string whole;
    for (const std::u16string& part : parts) whole.append(whole.empty() ? u"" : u"\\").append(part);
    return whole;
}

bool MemoryFiles::makeFolder(std::u16string_view path) {
    if (diskFull || refusesChange(fileKey(path))) return false;
    folders.emplace_back(path);
    return true;
}

void MemoryClock::set(int year, int month, int day, int hour, int minute, int second) {
    const auto date = automation::dateFromFields({year, month, day, hour, minute, second});
    if (!date) throw Error(5, u"No such date");
    now_ = *date;
}

void MemoryClock::advance(double seconds) {
    now_.days += seconds / 86400;
    timer_ += seconds;
}

double MemoryClock::timer() const {
    return std::exchange(timer_, timer_ + step);
}

void MemoryObjects::add(std::u16string_view className, Factory factory) {
    factories_[lowerCase(className)] = std::move(factory);
}

void MemoryObjects::fail(std::u16string_view className) {
    add(className, [] { return automation::ObjectRef(); });
}

automation::ObjectRef MemoryObjects::create(std::u16string_view className) {
    requireClassName(className);
    const auto place = factories_.find(lowerCase(className));
    automation::ObjectRef object = place == factories_.end() ? nullptr : place->second();
    if (!object) throw Error(429, u"Cannot create object \"" + std::u16string(className) + u"\"");
    created.emplace_back(className);
    return object;
}

std::u16string MemoryGuids::next() {
    const std::uint32_t n = ++count_;
    std::string bytes(16, '\0');
    for (int i = 0; i < 4; ++i) bytes[static_cast<std::size_t>(i)] = static_cast<char>(n >> (24 - 8 * i));
    bytes[6] = '\x40';
    bytes[8] = '\x80';
    return guidText(bytes);
}

MemoryServices::MemoryServices()
    : Services{MemoryParts::registry, MemoryParts::files,    MemoryParts::clock, MemoryParts::folders,
               MemoryParts::objects,  MemoryParts::pictures, MemoryParts::guids} {}

}  // namespace velmor::platform
