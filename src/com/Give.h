#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "kvVelmor3.h"
#include "platform/win32/Windows.h"

namespace velmor {
class kvDirectTag;
class kvTag;
class kvTags;
class privProperties;
class privProperty;
class privStrCat;
}  // namespace velmor

namespace velmor::com {

// What a member gives, as the platform wants it. A type that is not listed does not compile.
void give(BSTR& place, const std::u16string& value);
void give(BSTR& place, const std::shared_ptr<const privStrCat>& value);  // never null
void give(VARIANT& place, const automation::Variant& value);
void give(IDispatch*& place, const automation::ObjectRef& value);
inline void give(long& place, std::int32_t value) {
    place = value;
}
inline void give(short& place, std::int16_t value) {
    place = value;
}
inline void give(short& place, bool value) {
    place = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void give(double& place, double value) {
    place = value;
}
inline void give(double& place, automation::Date value) {
    place = value.days;
}
inline void give(float& place, float value) {
    place = value;
}
template <class Interface>
requires std::is_base_of_v<IUnknown, Interface>
void give(Interface*& place, Interface* value) {
    place = value;  // the reference goes with it
}

// A core object's face; nothing for null. (Faces.cpp)
void give(_kvTag*& place, const std::shared_ptr<kvTag>& value);
void give(_kvDirectTag*& place, const std::shared_ptr<kvDirectTag>& value);
void give(_kvTags*& place, const std::shared_ptr<kvTags>& value);
void give(_privProperties*& place, const std::shared_ptr<privProperties>& value);
void give(_privProperty*& place, const std::shared_ptr<privProperty>& value);

}  // namespace velmor::com
