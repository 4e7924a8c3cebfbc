#include <new>

#include "platform/win32/Failure.h"
#include "platform/win32/VariantBridge.h"
#include "text/Encoding.h"
//
#include "extension/ErrorNumbers.h"  // after windows.h

namespace velmor::platform {

namespace {

std::u16string takeText(BSTR& text) {
    std::u16string copy(viewOf(text));
    SysFreeString(text);
    text = nullptr;
    return copy;
}

std::u16string descriptionOf(HRESULT result) {
    return errorText(com::knownNumberOf(result));
}

// Of the exception being handled. Throws where there is no memory for the texts.
Raised describeException() {
    try {
        throw;
    } catch (const Error& error) {
        return {com::resultOf(error.number()), error.source(), error.description()};
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

Raised raisedNow() noexcept try { return describeException(); } catch (...) {
    return {E_OUTOFMEMORY, {}, {}};
}

Error errorOf(HRESULT result, EXCEPINFO* exception) {
    if (result != DISP_E_EXCEPTION || exception == nullptr) {
        return Error(com::errorNumberOf(result), u"", descriptionOf(result));
    }
    if (exception->pfnDeferredFillIn != nullptr) exception->pfnDeferredFillIn(exception);
    const HRESULT raised = exception->scode;
    const std::int32_t number = raised != 0 ? com::errorNumberOf(raised) : exception->wCode;
    std::u16string source = takeText(exception->bstrSource);
    std::u16string description = takeText(exception->bstrDescription);
    SysFreeString(exception->bstrHelpFile);
    exception->bstrHelpFile = nullptr;
    if (description.empty()) description = descriptionOf(raised);
    return Error(number, std::move(source), std::move(description));
}

}  // namespace velmor::platform
