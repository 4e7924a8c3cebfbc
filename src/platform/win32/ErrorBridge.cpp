#include <algorithm>
#include <new>

#include "platform/win32/Failure.h"
#include "platform/win32/VariantBridge.h"
#include "text/Encoding.h"

namespace velmor::platform {

namespace {

constexpr HRESULT controlFacility = static_cast<HRESULT>(0x800A0000u);

struct KnownResult {
    HRESULT result;
    std::int32_t number;
};
constexpr KnownResult knownResults[] = {
    {DISP_E_MEMBERNOTFOUND, 438}, {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_BADPARAMCOUNT, 450},  {DISP_E_PARAMNOTOPTIONAL, 450},
    {DISP_E_TYPEMISMATCH, 13},    {DISP_E_BADVARTYPE, 13},
    {DISP_E_OVERFLOW, 6},         {DISP_E_BADINDEX, 9},
    {E_OUTOFMEMORY, 7},           {E_INVALIDARG, 5},
    {E_NOINTERFACE, 430},         {REGDB_E_CLASSNOTREG, 429},
    {CO_E_CLASSSTRING, 429},
};

bool isControlResult(HRESULT result) noexcept {
    return (static_cast<std::uint32_t>(result) & 0xFFFF0000u) == static_cast<std::uint32_t>(controlFacility);
}

std::u16string takeText(BSTR& text) {
    std::u16string copy(viewOf(text));
    SysFreeString(text);
    text = nullptr;
    return copy;
}

std::u16string descriptionOf(HRESULT result) {
    const auto* const known = std::ranges::find(knownResults, result, &KnownResult::result);
    return errorText(known == std::end(knownResults) ? 0 : known->number);
}

// Of the exception being handled. Throws where there is no memory for the texts.
Raised describeException() {
    try {
        throw;
    } catch (const Error& error) {
        return {hresultOf(error), error.source(), error.description()};
    } catch (const Failure& failure) {
        return {failure.code, {}, {}};
    } catch (const std::bad_alloc&) {
        return {E_OUTOFMEMORY, {}, {}};
    } catch (const std::exception& error) {
        return {E_FAIL, {}, fromUtf8(error.what())};
    } catch (...) {
        return {};
    }
}

}  // namespace

HRESULT hresultOf(const Error& error) noexcept {
    const std::int32_t number = error.number();
    if (number > 0 && number <= 0xFFFF) return controlFacility | number;
    return FAILED(number) ? static_cast<HRESULT>(number) : E_FAIL;
}

std::int32_t errorNumberOf(HRESULT result) noexcept {
    const auto* const known = std::ranges::find(knownResults, result, &KnownResult::result);
    if (known != std::end(knownResults)) return known->number;
    return isControlResult(result) ? result & 0xFFFF : static_cast<std::int32_t>(result);
}

Raised raisedNow() noexcept {
    try {
        return describeException();
    } catch (...) {
        return {E_OUTOFMEMORY, {}, {}};
    }
}

Error errorOf(HRESULT result, EXCEPINFO* exception) {
    if (result != DISP_E_EXCEPTION || exception == nullptr) {
        return Error(errorNumberOf(result), u"", descriptionOf(result));
    }
    if (exception->pfnDeferredFillIn != nullptr) exception->pfnDeferredFillIn(exception);
    const HRESULT raised = exception->scode;
    const std::int32_t number = raised != 0 ? errorNumberOf(raised) : exception->wCode;
    std::u16string source = takeText(exception->bstrSource);
    std::u16string description = takeText(exception->bstrDescription);
    SysFreeString(exception->bstrHelpFile);
    exception->bstrHelpFile = nullptr;
    if (description.empty()) description = descriptionOf(raised);
    return Error(number, std::move(source), std::move(description));
}

}  // namespace velmor::platform
