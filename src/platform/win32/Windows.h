#pragma once

// The only header that includes <windows.h>. Without GDI and the rarely used parts: otherwise macros rename
// members such as GetObject.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOGDI
#define NOGDI
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <windows.h>
// Automation: IDispatch, VARIANT, BSTR, type libraries.
#include <objbase.h>
#include <oleauto.h>
