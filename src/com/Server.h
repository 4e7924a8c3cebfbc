#pragma once

#include <span>

#include "platform/win32/Faces.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// An in-process server in one table. A DLL made by velmor_server_dll(TARGET SOURCE ...) defines server(); the entry
// points (Exports.cpp), class factories and registration follow from it. A handler written against
// automation::Object becomes a component with one more source file:
//
//     automation::ObjectRef makeDates() { return std::make_shared<DateHandler>(); }
//
//     const velmor::com::ServedClass classes[] = {
//         {{0x.., ..}, L"Sample.Dates", L"1.0", L"Dates", &makeDates},
//     };
//     const velmor::com::Server& velmor::com::server() noexcept {
//         static const Server all{classes};
//         return all;
//     }

struct ServedClass {
    CLSID id;
    const wchar_t* className;    // under which it is created: "Maker.Class", without a version
    const wchar_t* version;      // "3.0"; its whole part makes the versioned name "Maker.Class.3"
    const wchar_t* description;  // what a registry editor shows
    // A new object. It goes out by platform::faceOf.
    automation::ObjectRef (*make)();
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
