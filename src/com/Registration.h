#pragma once

#include "com/Server.h"

namespace velmor::com {

// Whose classes: every user's (HKEY_LOCAL_MACHINE, which needs the right to write there), or the current user's alone
// (HKEY_CURRENT_USER).
enum class Audience { everyone, currentUser };

// Writes the server's classes and its type library: class identifier, plain and versioned class name, the DLL's path,
// the apartment threading model. Throws Failure; nothing of it is then left, as after unregisterServer.
void registerServer(const Server& server, Audience audience);

// Leaves nothing of it, also where only a part was there. A part that cannot be removed does not keep the others;
// Failure tells the first such.
void unregisterServer(const Server& server, Audience audience);

}  // namespace velmor::com
