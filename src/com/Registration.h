#pragma once

#include "com/Server.h"

namespace velmor::com {

// Where hosts that cannot load the DLL find its objects: nowhere, or in a process that the system starts for them.
enum class Surrogate { none, system };

// Writes the server's classes and its type library: class identifier, plain and versioned class name, the DLL's
// path, the apartment threading model. They are those of all users (the root is HKEY_LOCAL_MACHINE, which needs the
// right to write there), or of the current user (HKEY_CURRENT_USER). Throws Failure, and then leaves no trace, as after
// unregisterServer.
void registerServer(const Server& server, HKEY root, Surrogate surrogate = Surrogate::none);

// Removes all of it, also an incomplete registration. What the same component of the other bitness shares stays while
// that one is registered. If a part cannot be removed, the others are removed nevertheless; Failure has the first
// error.
void unregisterServer(const Server& server, HKEY root);

}  // namespace velmor::com
