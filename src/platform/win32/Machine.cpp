#include "platform/Machine.h"

#include <array>

#include "automation/Convert.h"
#include "platform/SystemServices.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Windows.h"
#include "text/Encoding.h"

// They need Windows.h before them.
#include <shlobj.h>

#include "extension/ClassRegistry.h"

namespace velmor::platform {
namespace {

std::u16string reasonOf(HRESULT failure, const CLSID& identifier) {
    const com::ClassRegistry classes(HKEY_LOCAL_MACHINE);
    const std::wstring key = com::classKey(com::textOf(identifier));
    if (!classes.has(key) && classes.has(key, com::otherView)) {
        return com::is64Bit ? u"the class is registered for 32-bit programs only"
                            : u"the class is registered for 64-bit programs only";
    }
    return errorOf(failure, nullptr).description();
}

// The system's registered automation classes. COM must have been initialised on the calling thread. Each object's class
// is looked up anew, in a manifest of the host, then in the registry.
class MachineObjects : public Objects {
public:
    automation::ObjectRef create(std::u16string_view className) override {
        requireClassName(className);
        CLSID identifier{};
        if (FAILED(CLSIDFromProgID(wide(className).c_str(), &identifier))) {
            raiseCannotCreate(className, u"the class is not registered");
        }
        ComPtr<IDispatch> dispatch;
        const HRESULT result = CoCreateInstance(identifier, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                                IID_IDispatch, dispatch.putVoid());
        if (FAILED(result)) raiseCannotCreate(className, reasonOf(result, identifier));
        return objectOf(dispatch.get());
    }
};

}  // namespace

automation::Date localTime() {
    SYSTEMTIME time{};
    GetLocalTime(&time);
    return automation::dateFromFields({time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond})
        .value_or(automation::Date{});
}

std::u16string commonDataFolder() {
    wchar_t path[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, 0, path))) return {};
    return fromWide(path);
}

std::u16string temporaryFolder() {
    wchar_t path[MAX_PATH + 2] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 2, path);
    return length == 0 || length > MAX_PATH + 1 ? std::u16string() : fromWide({path, length});
}

std::u16string nameOfMachine() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    return GetComputerNameW(name, &length) ? fromWide({name, length}) : std::u16string();
}

std::unique_ptr<Objects> machineObjects(const Registry&, std::vector<std::u16string>) {
    return std::make_unique<MachineObjects>();
}

std::u16string ownFile() {
    return fromWide(com::ownFile());
}

std::string lastSystemError() {
    const DWORD number = GetLastError();
    std::array<wchar_t, 512> text{};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number, 0,
                                        text.data(), static_cast<DWORD>(text.size()), nullptr);
    std::u16string message(reinterpret_cast<const char16_t*>(text.data()), length);
    while (!message.empty() && (message.back() <= u' ' || message.back() == u'.')) message.pop_back();
    return message.empty() ? "error " + std::to_string(number) : toUtf8(message);
}

}  // namespace velmor::platform
