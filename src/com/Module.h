#pragma once

#include <string>

#include "platform/win32/Windows.h"

namespace velmor::com {

// The DLL that contains this code: the references that keep it loaded, and its path.
class Module {
public:
    // Counted are objects with references and locks of class factories.
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
