#include "com/PropertiesFace.h"

#include "com/Enumerator.h"
#include "com/Receive.h"
#include "properties/PropertyEnumerator.h"

namespace velmor::com {

namespace {

// A default value that was left out is empty.
automation::Variant defaultOf(const VARIANT& value) {
    automation::Variant given = valueOf(value);
    return given.isMissing() ? automation::Variant() : given;
}

}  // namespace

HRESULT PropertiesFace::Add(BSTR psName, VARIANT pvValue, VARIANT_BOOL pbReplaceOriginal,
                            _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->Add(viewOf(psName), valueOf(pvValue), isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddStr(BSTR psName, BSTR psValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->AddStr(viewOf(psName), textOf(psValue), isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddLng(BSTR psName, long plValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->AddLng(viewOf(psName), plValue, isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddDbl(BSTR psName, double pdValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->AddDbl(viewOf(psName), pdValue, isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddSng(BSTR psName, float pnValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->AddSng(viewOf(psName), pnValue, isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddDate(BSTR psName, DATE pdValue, VARIANT_BOOL pbReplaceOriginal,
                                _privProperty** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->AddDate(viewOf(psName), automation::Date{pdValue}, isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddBoolean(BSTR psName, VARIANT_BOOL pbValue, VARIANT_BOOL pbReplaceOriginal,
                                   _privProperty** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->AddBoolean(viewOf(psName), isTrue(pbValue), isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddInt(BSTR psName, short piValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->AddInt(viewOf(psName), piValue, isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::AddObject(BSTR psName, IDispatch* poValue, VARIANT_BOOL pbReplaceOriginal,
                                  _privProperty** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->AddObject(viewOf(psName), objectOf(poValue), isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::get_Item(VARIANT pvIndexKey, _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->Item(valueOf(pvIndexKey)); });
}

HRESULT PropertiesFace::get_Count(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->Count(); });
}

HRESULT PropertiesFace::Remove(VARIANT pvIndexKey) noexcept {
    return guard([&] { core_->Remove(valueOf(pvIndexKey)); });
}

HRESULT PropertiesFace::get_NewEnum(IUnknown** pResult) noexcept {
    return guard(pResult, [&] { return Enumerator::of(core_->NewEnum()); });
}

HRESULT PropertiesFace::GetProperty(BSTR psName, VARIANT pvDefaultValue, _privProperty** pResult) noexcept {
    return guard(pResult, [&] { return core_->GetProperty(viewOf(psName), defaultOf(pvDefaultValue)); });
}

HRESULT PropertiesFace::GetValue(BSTR psName, VARIANT pvDefaultValue, VARIANT* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValue(viewOf(psName), defaultOf(pvDefaultValue)); });
}

HRESULT PropertiesFace::GetValueStr(BSTR psName, BSTR psDefaultValue, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueStr(viewOf(psName), viewOf(psDefaultValue)); });
}

HRESULT PropertiesFace::GetValueStrCatDump(BSTR psName, BSTR psDefaultValue, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueStrCatDump(viewOf(psName), viewOf(psDefaultValue)); });
}

HRESULT PropertiesFace::GetValueLng(BSTR psName, long plDefaultValue, long* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueLng(viewOf(psName), plDefaultValue); });
}

HRESULT PropertiesFace::GetValueInt(BSTR psName, short piDefaultValue, short* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueInt(viewOf(psName), piDefaultValue); });
}

HRESULT PropertiesFace::GetValueDbl(BSTR psName, double pnDefaultValue, double* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueDbl(viewOf(psName), pnDefaultValue); });
}

HRESULT PropertiesFace::GetValueSng(BSTR psName, float pnDefaultValue, float* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueSng(viewOf(psName), pnDefaultValue); });
}

HRESULT PropertiesFace::GetValueDate(BSTR psName, DATE pdDefaultValue, DATE* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueDate(viewOf(psName), automation::Date{pdDefaultValue}); });
}

HRESULT PropertiesFace::GetValueObject(BSTR psName, IDispatch* poDefaultValue, IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueObject(viewOf(psName), objectOf(poDefaultValue)); });
}

HRESULT PropertiesFace::GetValueBoolean(BSTR psName, VARIANT_BOOL pbDefaultValue, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetValueBoolean(viewOf(psName), isTrue(pbDefaultValue)); });
}

HRESULT PropertiesFace::get_Delimited(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Delimited(); });
}

HRESULT PropertiesFace::get_Stored(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Stored(); });
}

HRESULT PropertiesFace::get_Command(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Command(); });
}

HRESULT PropertiesFace::get_TagCommand(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->TagCommand(); });
}

HRESULT PropertiesFace::Build(BSTR* psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                              BSTR psDelimiter) noexcept {
    return guard([&] {
        core_->Build(viewOf(given(psString)), isTrue(pbAppendValues), isTrue(pbTagString), viewOf(psDelimiter));
    });
}

HRESULT PropertiesFace::BuildByVal(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                   BSTR psDelimiter) noexcept {
    return guard(
        [&] { core_->BuildByVal(viewOf(psString), isTrue(pbAppendValues), isTrue(pbTagString), viewOf(psDelimiter)); });
}

HRESULT PropertiesFace::BuildByDelimited(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                         BSTR psDelimiter) noexcept {
    return guard([&] {
        core_->BuildByDelimited(viewOf(psString), isTrue(pbAppendValues), isTrue(pbTagString), viewOf(psDelimiter));
    });
}

HRESULT PropertiesFace::BuildInternal(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                      BSTR psDelimiter) noexcept {
    return BuildByVal(psString, pbAppendValues, pbTagString, psDelimiter);
}

HRESULT PropertiesFace::SaveFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->SaveFile(viewOf(psFileName), viewOf(psPassword)); });
}

HRESULT PropertiesFace::SaveToFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->SaveToFile(viewOf(psFileName), viewOf(psPassword)); });
}

HRESULT PropertiesFace::LoadFromFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->LoadFromFile(viewOf(psFileName), viewOf(psPassword)); });
}

HRESULT PropertiesFace::BuildByContainsQuery(BSTR psSearchString) noexcept {
    return guard([&] { core_->BuildByContainsQuery(viewOf(psSearchString)); });
}

HRESULT PropertiesFace::get_ContainsQuery(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ContainsQuery(); });
}

HRESULT PropertiesFace::RemoveAll() noexcept {
    return guard([&] { core_->RemoveAll(); });
}

HRESULT PropertiesFace::Dispose() noexcept {
    return guard([&] { core_->Dispose(); });
}

HRESULT PropertiesFace::get_Changed(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->Changed(); });
}

HRESULT PropertiesFace::Sort() noexcept {
    return guard([&] { core_->Sort(); });
}

HRESULT PropertiesFace::Insert(long plIndex, BSTR psName, VARIANT pvValue, VARIANT_BOOL pbReplaceOriginal,
                               _privProperty** pResult) noexcept {
    return guard(pResult,
                 [&] { return core_->Insert(plIndex, viewOf(psName), valueOf(pvValue), isTrue(pbReplaceOriginal)); });
}

HRESULT PropertiesFace::Move(VARIANT pvIndexKey, long plToIndex) noexcept {
    return guard([&] { core_->Move(valueOf(pvIndexKey), plToIndex); });
}

HRESULT PropertiesFace::GetPropertyIndex(BSTR psName, long* pResult) noexcept {
    return guard(pResult, [&] { return core_->GetPropertyIndex(viewOf(psName)); });
}

HRESULT PropertiesFace::get_CountTotal(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->CountTotal(); });
}

HRESULT PropertiesFace::get_Size(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->Size(); });
}

HRESULT PropertiesFace::get_SizeStored(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->SizeStored(); });
}

}  // namespace velmor::com
