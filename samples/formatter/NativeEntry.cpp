// The handler as a shared library, for programs on systems without component registration.

#include <memory>

#include "Formatter.h"
#include "platform/NativeObject.h"
#include "text/Compare.h"

extern "C" __attribute__((visibility("default"))) int velmorCreateObject(int abiVersion, const char16_t* className,
                                                                         std::size_t length,
                                                                         velmor::automation::ObjectRef* result) {
    if (abiVersion != velmor::velmorNativeAbi) return velmor::velmorOtherAbi;
    if (!velmor::equalIgnoringCase({className, length}, u"Sample.Formatter")) return velmor::velmorUnknownClass;
    try {
        *result = std::make_shared<sample::Formatter>();
        return velmor::velmorCreated;
    } catch (...) {
        return velmor::velmorCreationFailed;
    }
}
