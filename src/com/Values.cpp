#include "com/Values.h"

#include <utility>

#include "text/privStrCat.h"

namespace velmor::com {

void putBack(BSTR* place, automation::TextReference& text) {
    if (!place || !text.made()) return;
    SysFreeString(std::exchange(*place, platform::makeBstr(*text.made())));
}

void give(BSTR& place, const std::u16string& value) {
    place = platform::makeBstr(value);
}

void give(BSTR& place, const std::shared_ptr<const privStrCat>& value) {
    place = platform::makeBstr(value->contiguous());
}

void give(VARIANT& place, const automation::Variant& value) {
    platform::toVariant(value, place);
}

void give(IDispatch*& place, const automation::ObjectRef& value) {
    place = platform::faceOf(value);
}

}  // namespace velmor::com
