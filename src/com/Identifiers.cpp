// Defines the identifiers that kvVelmor3.h declares.
#include "platform/win32/Windows.h"
//
#include <initguid.h>
//
#include "kvVelmor3.h"
