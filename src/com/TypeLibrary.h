#pragma once

#include "platform/win32/Windows.h"

namespace velmor::com {

// The component's type library, out of its own resources: for compilers and browsers. Loaded on first use. Any thread.
ITypeLib& typeLibrary();  // throws Failure

// Of an interface as late binding sees it, or of a class.
HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept;

// Lets the library go, just before the DLL is unloaded.
void releaseTypeLibrary() noexcept;

}  // namespace velmor::com
