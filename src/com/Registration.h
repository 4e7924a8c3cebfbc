#pragma once

#include "com/Server.h"

namespace velmor::com {

// The owner of the classes: all users (HKEY_LOCAL_MACHINE, which needs the right to write there), or the
// current user (HKEY_CURRENT_USER).
enum class Audience { everyone, currentUser };

// Where hosts that cannot load the DLL find its objects: nowhere, or in a process that the system starts for them.
enum class Surrogate { none, system };

// Writes the server's classes and its type library: class identifier, plain and versioned class name, the DLL's
// path, the apartment threading model. Throws Failure, and then leaves no trace, as after unregisterServer.
void registerServer(const Server& server, Audience audience, Surrogate surrogate = Surrogate::none);

// Removes all of it, also an incomplete registration. What the same component of the other bitness shares stays while
// that one is registered. If a part cannot be removed, the others are removed nevertheless; Failure has the first
// error.
void unregisterServer(const Server& server, Audience audience);

}  // namespace velmor::com
