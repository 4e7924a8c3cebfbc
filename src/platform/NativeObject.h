#pragma once

#include <cstddef>

#include "automation/Object.h"

// How a shared library gives objects to the engine on systems without component registration.
//
// The registry file names a class in one of two ways:
//
//     [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\Sample.Formatter]
//     "NativeLibrary"="libsample.so"
//
// or like a component's registration on Windows, so that an exported registration works unchanged:
//
//     [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\Sample.Formatter\CLSID]
//     @="{01234567-89AB-CDEF-0123-456789ABCDEF}"
//     [HKEY_LOCAL_MACHINE\SOFTWARE\Classes\CLSID\{01234567-89AB-CDEF-0123-456789ABCDEF}\InprocServer32]
//     @="C:\\Program Files\\Sample\\sample.dll"
//
// An absolute path that exists is used unchanged. Otherwise the file's name is searched in the folder of
// the registry file, the handler folders, and the component's folder; for "sample.dll" the names are
// "sample.so" and "libsample.so".
//
// The library stays loaded until the program ends. Its objects are C++ objects: it must be built
// with the same compiler and standard library as the program, and against the same headers;
// velmorNativeAbi changes whenever these do. Objects are created and called on the caller's thread.

namespace velmor {

inline constexpr int velmorNativeAbi = 1;

enum VelmorCreateOutcome : int {
    velmorCreated = 0,
    velmorUnknownClass = 1,
    velmorOtherAbi = 2,
    velmorCreationFailed = 3,
};

}  // namespace velmor

extern "C" {

// The only function that such a library exports, under this name. It puts a new object into `result` and
// returns velmorCreated, or does not change `result` and returns another outcome.
// `className` is the registered name, `length` code units without a closing zero. abiVersion is the
// program's velmorNativeAbi; a library that was built for another one returns velmorOtherAbi.
// No exception may leave it.
//
//     extern "C" __attribute__((visibility("default"))) int velmorCreateObject(
//         int abiVersion, const char16_t* className, std::size_t length, velmor::automation::ObjectRef* result) {
//         if (abiVersion != velmor::velmorNativeAbi) return velmor::velmorOtherAbi;
//         if (!velmor::equalIgnoringCase({className, length}, u"Sample.Formatter")) return velmor::velmorUnknownClass;
//         *result = std::make_shared<Formatter>();
//         return velmor::velmorCreated;
//     }
using VelmorCreateObject = int(int abiVersion, const char16_t* className, std::size_t length,
                               velmor::automation::ObjectRef* result);
}
