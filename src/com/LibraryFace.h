#pragma once

#include "com/Face.h"
#include "common/kvLibrary.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class kvLibrary.
class LibraryFace final : public Face<_kvLibrary, kvLibrary, IID__kvLibrary, CLSID_kvLibrary> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE RegistryValue(BSTR psKey, BSTR psName, BSTR psDefault, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ToNumber(VARIANT pvValue, double* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE IsTrue(VARIANT pvValue, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommonDataFolder(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_TemporaryFolder(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MachineName(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE NewGuid(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE MakeFolder(BSTR psPath, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE FileExists(BSTR psPath, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadTextFile(BSTR psPath, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AppendText(BSTR psPath, BSTR psText, VARIANT_BOOL pbCreate,
                                         VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE TemporaryName(BSTR psPrefix, BSTR psExtension, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Base64(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE FromBase64(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Hexadecimal(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE FromHexadecimal(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Compress(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Decompress(BSTR psText, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Encipher(BSTR psText, BSTR psPassword, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Decipher(BSTR psText, BSTR psPassword, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveTextFile(BSTR psPath, BSTR psText, VARIANT_BOOL pbUtf8,
                                           VARIANT_BOOL* pResult) noexcept override;
};

}  // namespace velmor::com
