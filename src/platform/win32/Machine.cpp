#include "platform/win32/Machine.h"

#include <chrono>
#include <utility>

#include "automation/Convert.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Windows.h"
#include "text/Error.h"
#include "text/ErrorSource.h"

// Needs Windows.h before it.
#include <shlobj.h>

namespace velmor::platform {
namespace {

constexpr DWORD kLongestPath = 32768;

// The root of a drive keeps its separator.
std::u16string withoutLastSeparator(std::u16string folder) {
    while (folder.size() > 3 && (folder.back() == u'\\' || folder.back() == u'/')) folder.pop_back();
    return folder;
}

// The file of the program or component that contains this code.
std::u16string ownFolder() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ownFolder), &module);
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), kLongestPath));
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == path.npos ? u"." : withoutLastSeparator(fromWide(path.substr(0, separator + 1)));
}

}  // namespace

automation::Date MachineClock::now() const {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return automation::dateFromFields({time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond})
        .value_or(automation::Date{});
}

double MachineClock::timer() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

MachineFolders::MachineFolders(std::u16string componentFolder)
    : component_(componentFolder.empty() ? ownFolder() : withoutLastSeparator(std::move(componentFolder))) {}

std::u16string MachineFolders::commonData() const {
    wchar_t path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, path))) return {};
    return withoutLastSeparator(fromWide(path));
}

std::u16string MachineFolders::temporary() const {
    wchar_t path[MAX_PATH + 2] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 2, path);
    return length == 0 || length > MAX_PATH + 1 ? std::u16string() : withoutLastSeparator(fromWide({path, length}));
}

std::u16string MachineFolders::machineName() const {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    return GetComputerNameW(name, &length) ? fromWide({name, length}) : std::u16string();
}

std::u16string MachineGuids::next() {
    GUID guid{};
    wchar_t text[39] = {};
    if (FAILED(CoCreateGuid(&guid)) || StringFromGUID2(guid, text, 39) != 39)
        throw Error(5, kErrorSource, u"No new GUID");
    return fromWide({text, 38});
}

}  // namespace velmor::platform
