#pragma once

#include "automation/Object.h"
#include "com/Server.h"
#include "platform/win32/Windows.h"

// Serves portable late-bound objects as registered automation classes. A handler written against
// automation::Object becomes a component DLL with one more source file:
//
//     automation::ObjectRef makeDates() { return std::make_shared<DateHandler>(); }
//
//     const velmor::com::ServedClass classes[] = {
//         {{0x.., ..}, L"Sample.Dates", L"1.0", L"Dates", &velmor::com::createObject<makeDates>},
//     };
//     const velmor::com::Server& velmor::com::server() noexcept {
//         static const Server all{classes};
//         return all;
//     }
//
// and velmor_server_dll(TARGET SOURCE ...) in the build.

namespace velmor::com {

// A new object's late-bound interface. If the object cannot be made, it fails like a member.
HRESULT createObjectFrom(automation::ObjectRef (*make)(), REFIID id, void** object) noexcept;

template <automation::ObjectRef (*make)()>
HRESULT createObject(REFIID id, void** object) noexcept {
    return createObjectFrom(make, id, object);
}

}  // namespace velmor::com
