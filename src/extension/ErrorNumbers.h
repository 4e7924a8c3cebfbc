#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

// The numbers of automation errors and the platform's results. For the component, and for libraries of handlers, which
// get this header with ComHandler.cpp. Needs <windows.h> before it.
namespace velmor::com {

struct KnownResult {
    HRESULT code;
    std::int32_t number;
};
inline constexpr KnownResult knownResults[] = {
    {DISP_E_MEMBERNOTFOUND, 438}, {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_BADPARAMCOUNT, 450},  {DISP_E_PARAMNOTOPTIONAL, 450},
    {DISP_E_TYPEMISMATCH, 13},    {DISP_E_BADVARTYPE, 13},
    {DISP_E_OVERFLOW, 6},         {DISP_E_BADINDEX, 9},
    {E_OUTOFMEMORY, 7},           {E_INVALIDARG, 5},
    {E_NOINTERFACE, 430},         {REGDB_E_CLASSNOTREG, 429},
    {CO_E_CLASSSTRING, 429},
};

// The number that scripts know for a failure of the platform; 0 for any other result.
inline std::int32_t knownNumberOf(HRESULT code) noexcept {
    const auto* const known = std::ranges::find(knownResults, code, &KnownResult::code);
    return known == std::end(knownResults) ? 0 : known->number;
}

// Numbers 1 to 65535 are HRESULTs of the control facility (0x800A....); others are taken as they are, the platform's
// failures by the numbers that scripts know them by.
inline std::int32_t errorNumberOf(HRESULT code) noexcept {
    const std::int32_t known = knownNumberOf(code);
    const bool isControl = (static_cast<std::uint32_t>(code) >> 16) == 0x800A;
    return known != 0 ? known : isControl ? code & 0xFFFF : static_cast<std::int32_t>(code);
}
inline HRESULT resultOf(std::int32_t number) noexcept {
    if (number > 0 && number <= 0xFFFF) return static_cast<HRESULT>(0x800A0000u) | number;
    return FAILED(number) ? static_cast<HRESULT>(number) : E_FAIL;
}

}  // namespace velmor::com
