#pragma once

#include <span>

#include "platform/win32/Faces.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// An in-process server in one table. A DLL made by velmor_server_dll defines server(); the entry
// points (Exports.cpp, Server.def), class factories and registration follow from it.

struct ServedClass {
    CLSID id;
    const wchar_t* className;    // under which it is created: "Maker.Class", without a version
    const wchar_t* version;      // "3.0"; its whole part makes the versioned name "Maker.Class.3"
    const wchar_t* description;  // what a registry editor shows
    // A new object's interface; what IClassFactory::CreateInstance promises.
    HRESULT (*create)(REFIID id, void** object) noexcept;
};

struct Server {
    std::span<const ServedClass> classes;
    // Of the type library in the DLL's resources; null for none.
    const GUID* typeLibrary = nullptr;
    // For objects that pass the boundary; null where every object goes out under an adapter.
    platform::FaceProvider faces = nullptr;
};

// Defined once in each DLL.
const Server& server() noexcept;

}  // namespace velmor::com
