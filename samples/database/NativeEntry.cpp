// The host's classes as a shared library.

#include <memory>

#include "CustomerTag.h"
#include "Records.h"
#include "platform/NativeObject.h"
#include "text/Compare.h"

namespace {

velmor::automation::ObjectRef create(std::u16string_view className) {
    if (velmor::equalIgnoringCase(className, u"Sample.Database")) return std::make_shared<sample::Database>();
    if (velmor::equalIgnoringCase(className, u"Sample.Customer")) return std::make_shared<sample::Customer>();
    if (velmor::equalIgnoringCase(className, u"Sample.CustomerTag")) return std::make_shared<sample::CustomerTag>();
    return nullptr;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int velmorCreateObject(int abiVersion, const char16_t* className,
                                                                         std::size_t length,
                                                                         velmor::automation::ObjectRef* result) {
    if (abiVersion != velmor::velmorNativeAbi) return velmor::velmorOtherAbi;
    try {
        velmor::automation::ObjectRef object = create({className, length});
        if (!object) return velmor::velmorUnknownClass;
        *result = std::move(object);
        return velmor::velmorCreated;
    } catch (...) {
        return velmor::velmorCreationFailed;
    }
}
