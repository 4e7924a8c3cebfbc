#include "com/LibraryFace.h"

#include "com/Receive.h"

namespace velmor::com {

HRESULT LibraryFace::RegistryValue(BSTR psKey, BSTR psName, BSTR psDefault, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->RegistryValue(viewOf(psKey), viewOf(psName), viewOf(psDefault)); });
}

HRESULT LibraryFace::ToNumber(VARIANT pvValue, double* pResult) noexcept {
    return guard(pResult, [&] { return core_->ToNumber(valueOf(pvValue)); });
}

HRESULT LibraryFace::IsTrue(VARIANT pvValue, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->IsTrue(valueOf(pvValue)); });
}

HRESULT LibraryFace::get_CommonDataFolder(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommonDataFolder(); });
}

HRESULT LibraryFace::get_TemporaryFolder(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->TemporaryFolder(); });
}

HRESULT LibraryFace::get_MachineName(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->MachineName(); });
}

HRESULT LibraryFace::NewGuid(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->NewGuid(); });
}

HRESULT LibraryFace::MakeFolder(BSTR psPath, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->MakeFolder(viewOf(psPath)); });
}

HRESULT LibraryFace::FileExists(BSTR psPath, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->FileExists(viewOf(psPath)); });
}

HRESULT LibraryFace::ReadTextFile(BSTR psPath, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ReadTextFile(viewOf(psPath)); });
}

HRESULT LibraryFace::AppendText(BSTR psPath, BSTR psText, VARIANT_BOOL pbCreate, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->AppendText(viewOf(psPath), viewOf(psText), isTrue(pbCreate)); });
}

HRESULT LibraryFace::TemporaryName(BSTR psPrefix, BSTR psExtension, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->TemporaryName(viewOf(psPrefix), viewOf(psExtension)); });
}

HRESULT LibraryFace::Base64(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Base64(viewOf(psText)); });
}

HRESULT LibraryFace::FromBase64(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->FromBase64(viewOf(psText)); });
}

HRESULT LibraryFace::Hexadecimal(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Hexadecimal(viewOf(psText)); });
}

HRESULT LibraryFace::FromHexadecimal(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->FromHexadecimal(viewOf(psText)); });
}

HRESULT LibraryFace::Compress(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Compress(viewOf(psText)); });
}

HRESULT LibraryFace::Decompress(BSTR psText, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Decompress(viewOf(psText)); });
}

HRESULT LibraryFace::Encipher(BSTR psText, BSTR psPassword, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Encipher(viewOf(psText), viewOf(psPassword)); });
}

HRESULT LibraryFace::Decipher(BSTR psText, BSTR psPassword, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Decipher(viewOf(psText), viewOf(psPassword)); });
}

HRESULT LibraryFace::SaveTextFile(BSTR psPath, BSTR psText, VARIANT_BOOL pbUtf8, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->SaveTextFile(viewOf(psPath), viewOf(psText), isTrue(pbUtf8)); });
}

}  // namespace velmor::com
