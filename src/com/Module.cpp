#include "com/Module.h"

#include <atomic>

#include "platform/win32/FaceRegistry.h"
#include "platform/win32/Failure.h"

namespace velmor::com {

namespace {

std::atomic<long> objects{0};

}  // namespace

void Module::addObject() noexcept {
    ++objects;
}

void Module::removeObject() noexcept {
    --objects;
}

bool Module::unused() noexcept {
    return objects == 0 && platform::FaceRegistry::instance().isEmpty();
}

HMODULE Module::handle() noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&objects), &module);
    return module;
}

std::wstring Module::path() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(handle(), path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) throw platform::Failure{HRESULT_FROM_WIN32(GetLastError())};
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);  // cut off: the path is longer
    }
}

}  // namespace velmor::com
