#pragma once

#include "com/Server.h"

namespace velmor::com {

// Writes the server's classes and its type library to HKEY_LOCAL_MACHINE, for every user: class
// identifier, plain and versioned class name, the DLL's path, the apartment threading model.
// Throws Failure; what was written by then stays, and unregisterServer takes it back.
void registerServer(const Server& server);

// Leaves nothing of it, also where only a part was there. Throws Failure.
void unregisterServer(const Server& server);

}  // namespace velmor::com
