#pragma once

#include <string>

#include "platform/win32/Windows.h"

namespace velmor::com {

// The DLL that this code is linked into: what keeps it loaded, and where it lies.
class Module {
public:
    // Counted: every object that is handed out, every lock of a class factory.
    static void addObject() noexcept;
    static void removeObject() noexcept;
    static bool unused() noexcept;

    static HMODULE handle() noexcept;
    // Throws Failure.
    static std::wstring path();
};

// A member of this type keeps the DLL loaded for as long as the object lives.
struct KeepsModule {
    KeepsModule() noexcept { Module::addObject(); }
    KeepsModule(const KeepsModule&) noexcept : KeepsModule() {}
    KeepsModule& operator=(const KeepsModule&) noexcept = default;
    ~KeepsModule() { Module::removeObject(); }
};

}  // namespace velmor::com
