#pragma once

#include <utility>

#include "com/Values.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// The boundary. Every member that a host calls runs in guard(): a null out-pointer is refused, the place for the result
// is cleared before anything else happens, and no exception gets out. The interface is the member's, for the error
// record. Faces have a guard() of their own that knows it.

// The exception being handled as an HRESULT, with an error record where there is something to say.
// Numbers of the engine become 0x800A0000 + number.
HRESULT translateException(REFIID interfaceId) noexcept;

template <class Body>
HRESULT guard(REFIID interfaceId, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return S_OK;
    } catch (...) {
        return translateException(interfaceId);
    }
}

inline void clear(VARIANT& place) noexcept {
    VariantInit(&place);
}
template <class Out>
void clear(Out& place) noexcept {
    place = Out{};
}

template <class Out, class Body>
HRESULT guard(REFIID interfaceId, Out* pResult, Body&& body) noexcept {
    return guard(interfaceId, [&] {
        needed(pResult);
        clear(*pResult);
        give(*pResult, std::forward<Body>(body)());
    });
}

}  // namespace velmor::com
