#include "com/TagFace.h"

#include "com/Guard.h"
#include "com/Receive.h"
#include "core/kvTags.h"
#include "properties/privProperties.h"

namespace velmor::com {

HRESULT TagFace::get_Name(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Name(); });
}

HRESULT TagFace::put_Name(BSTR psValue) noexcept {
    return guard([&] { core_->Name(viewOf(psValue)); });
}

HRESULT TagFace::get_Value(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Value(); });
}

HRESULT TagFace::put_Value(BSTR psValue) noexcept {
    return guard([&] { core_->Value(textOf(psValue)); });
}

HRESULT TagFace::get_Result(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->resultText(); });
}

HRESULT TagFace::get_Properties(IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->Properties().object(); });
}

HRESULT TagFace::putref_Properties(IDispatch* poProperties) noexcept {
    return guard([&] { core_->Properties(Collection::fromObject(objectOf(poProperties))); });
}

HRESULT TagFace::GetProcessedPropertiesValue(BSTR psName, BSTR psDefault, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetProcessedPropertiesValue(viewOf(psName), viewOf(psDefault)); });
}

HRESULT TagFace::get_Variables(IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->Variables().object(); });
}

HRESULT TagFace::putref_Variables(IDispatch* poVariables) noexcept {
    return guard([&] { core_->Variables(Collection::fromObject(objectOf(poVariables))); });
}

HRESULT TagFace::GetProcessedVariablesValue(BSTR psName, BSTR psDefault, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetProcessedVariablesValue(viewOf(psName), viewOf(psDefault)); });
}

HRESULT TagFace::BuildTagCollection() noexcept {
    return guard([&] { core_->BuildTagCollection(); });
}

HRESULT TagFace::get_Elements(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->Elements(); });
}

HRESULT TagFace::GetProcessedElementsValue(BSTR psName, VARIANT pvDefault, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetProcessedElementsValue(viewOf(psName), valueOf(pvDefault)); });
}

HRESULT TagFace::get_HandlerName(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerName(); });
}

HRESULT TagFace::get_CommandName(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandName(); });
}

HRESULT TagFace::get_CommandValue(VARIANT* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandValue(); });
}

HRESULT TagFace::get_CommandValueProcessed(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandValueProcessed(); });
}

HRESULT TagFace::get_Database(IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->Database(); });
}

HRESULT TagFace::putref_Database(IDispatch* poDatabase) noexcept {
    return guard([&] { core_->Database(objectOf(poDatabase)); });
}

HRESULT TagFace::ProtectRTFCode(BSTR* psValue) noexcept {
    return guard([&] {
        std::u16string text = textOf(given(psValue));
        core_->ProtectRTFCode(text);
        replaceText(*psValue, text);
    });
}

HRESULT TagFace::get_ProtectRTF(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->ProtectRTF(); });
}

HRESULT TagFace::put_ProtectRTF(VARIANT_BOOL pbProtectRTF) noexcept {
    return guard([&] { core_->ProtectRTF(isTrue(pbProtectRTF)); });
}

HRESULT TagFace::CleanRTFFile(BSTR psFileName, BSTR psSaveFileName, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->CleanRTFFile(viewOf(psFileName), viewOf(psSaveFileName)); });
}

HRESULT TagFace::get_CleanRTFMergeMode(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->CleanRTFMergeMode(); });
}

HRESULT TagFace::put_CleanRTFMergeMode(VARIANT_BOOL pbMergeMode) noexcept {
    return guard([&] { core_->CleanRTFMergeMode(isTrue(pbMergeMode)); });
}

HRESULT TagFace::CleanRTF(BSTR* psRTF) noexcept {
    return guard([&] {
        std::u16string text = textOf(given(psRTF));
        core_->CleanRTF(text);
        replaceText(*psRTF, text);
    });
}

HRESULT TagFace::CleanRTFByVal(BSTR psRTF, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CleanRTFByVal(textOf(psRTF)); });
}

HRESULT TagFace::NewTag(_kvTag** pResult) noexcept {
    return guard(pResult, [&] { return core_->NewTag(); });
}

HRESULT TagFace::ProcessValue(BSTR psValue, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ProcessValue(viewOf(psValue)); });
}

HRESULT TagFace::ProcessName(BSTR psName, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ProcessName(viewOf(psName)); });
}

HRESULT TagFace::get_Tags(_kvTags** pResult) noexcept {
    return guard(pResult, [&] { return core_->Tags(); });
}

HRESULT TagFace::get_Direct(_kvDirectTag** pResult) noexcept {
    return guard(pResult, [&] { return core_->Direct(); });
}

HRESULT TagFace::LogError(BSTR psTagHandler, BSTR psError, long* plErrorNumber, BSTR psTagData,
                          BSTR psErrorData) noexcept {
    return guard([&] {
        std::int32_t number = plErrorNumber ? *plErrorNumber : 0;
        core_->LogError(viewOf(psTagHandler), viewOf(psError), number, viewOf(psTagData), viewOf(psErrorData));
        if (plErrorNumber) *plErrorNumber = number;
    });
}

HRESULT TagFace::get_ErrorLog(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->ErrorLog(); });
}

HRESULT TagFace::get_Library(IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->Library(); });
}

HRESULT TagFace::AddTableStartEndControlWords() noexcept {
    return guard([&] { core_->AddTableStartEndControlWords(); });
}

HRESULT TagFace::RemoveExtraTrowd(long* plTableStart, long* plTableEnd) noexcept {
    return guard([&] {
        std::int32_t start = given(plTableStart);
        std::int32_t end = given(plTableEnd);
        core_->RemoveExtraTrowd(start, end);
        *plTableStart = start;
        *plTableEnd = end;
    });
}

HRESULT TagFace::Dispose(VARIANT_BOOL pbDisposeProperties) noexcept {
    return guard([&] { core_->Dispose(isTrue(pbDisposeProperties)); });
}

}  // namespace velmor::com
