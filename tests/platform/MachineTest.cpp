#ifdef _WIN32

#include <gtest/gtest.h>

#include <algorithm>

#include "automation/Convert.h"
#include "platform/SystemServices.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

using automation::InvokeKind;
using automation::Variant;

// The number of the error that the call raises.
template <typename Call>
std::int32_t errorOf(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

class Machine : public testing::Test {
protected:
    Machine() { CoInitialize(nullptr); }
    ~Machine() override { CoUninitialize(); }

    std::u16string path(std::u16string_view name) const {
        return services_.folders.temporary() + u"\\velmor-test\\" + std::u16string(name);
    }

    Services& services_ = systemServices();
};

TEST_F(Machine, ReadsTextsFromTheRegistry) {
    const std::wstring path = L"SOFTWARE\\VelmorTest", large(5000, L'x');
    const DWORD number = 1;
    const auto put = [&](const wchar_t* name, DWORD type, const void* data, DWORD size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, path.c_str(), name, type, data, size), ERROR_SUCCESS);
    };
    put(L"SAMPLE", REG_SZ, L"Sample.Handler", 30);
    put(L"path", REG_EXPAND_SZ, L"%TEMP%\\x", 18);
    put(L"number", REG_DWORD, &number, sizeof number);
    put(L"open", REG_SZ, L"Sample", 4);  // without the closing zero
    put(L"large", REG_SZ, large.data(), 10000);
    HKEY group = nullptr;
    RegCreateKeyW(HKEY_LOCAL_MACHINE, (path + L"\\GROUP").c_str(), &group);
    RegCloseKey(group);

    const std::u16string_view key = u"software\\VELMORTEST\\";
    const Registry& registry = services_.registry;
    EXPECT_EQ(registry.value(key, u"sample"), u"Sample.Handler");
    EXPECT_EQ(registry.value(key, u"path"), u"%TEMP%\\x");
    EXPECT_EQ(registry.value(key, u"open"), u"Sa");
    EXPECT_EQ(registry.value(key, u"large"), std::u16string(5000, u'x'));
    EXPECT_EQ(registry.value(key, u"number"), std::nullopt);
    EXPECT_EQ(registry.value(key, u""), std::nullopt);
    EXPECT_EQ(registry.value(u"SOFTWARE\\NoSuchKey", u"sample"), std::nullopt);
    auto names = registry.valueNames(key);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::u16string>{u"SAMPLE", u"large", u"open", u"path"}));
    EXPECT_EQ(registry.subkeys(key), std::vector<std::u16string>{u"GROUP"});
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, (path + L"\\GROUP").c_str());
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, path.c_str());
}

TEST_F(Machine, WritesWholeAppendsAndCreatesOnce) {
    Files& files = services_.files;
    ASSERT_TRUE(files.makeFolder(path(u"a/b")));
    const std::u16string file = path(u"a\\b\\\u00fc\u4e00.txt");
    EXPECT_TRUE(files.write(file, "a long old text"));
    EXPECT_TRUE(files.write(file, std::string("new\0", 4)));
    EXPECT_TRUE(files.append(file, "+"));
    EXPECT_EQ(files.read(file), std::string("new\0+", 5));
    EXPECT_FALSE(files.create(file));
    EXPECT_TRUE(files.remove(file));
    EXPECT_FALSE(files.exists(file));
    EXPECT_FALSE(files.exists(path(u"a")));
    EXPECT_EQ(files.read(file), std::nullopt);
    EXPECT_FALSE(files.write(path(u"none\\x"), "x"));
    EXPECT_FALSE(files.write(path(u"a"), "x"));
    EXPECT_TRUE(files.write(u"NUL", "x"));
}

TEST_F(Machine, KnowsItsFolders) {
    EXPECT_FALSE(services_.folders.commonData().empty());
    EXPECT_FALSE(services_.folders.machineName().empty());
    EXPECT_TRUE(services_.files.exists(services_.folders.component() + u"\\test_platform.exe"));
    EXPECT_GT(services_.clock.now().days, 40000);
}

TEST_F(Machine, LoadsAndSavesPictures) {
    // Two pixels, 24 bits each.
    const std::string bitmap(
        "BM\x3e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x02\0\0\0\x01\0\0\0\x01\0\x18\0\0\0\0\0\x08\0\0\0"
        "\x13\x0b\0\0\x13\x0b\0\0\0\0\0\0\0\0\0\0\xff\0\0\0\xff\0\0\0",
        62);
    ASSERT_TRUE(services_.files.makeFolder(path(u"")));
    ASSERT_TRUE(services_.files.write(path(u"in.bmp"), bitmap));
    ASSERT_TRUE(services_.files.write(path(u"none.bmp"), "no picture"));
    const auto picture = services_.pictures.load(path(u"in.bmp"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->typeName(), u"Picture");
    EXPECT_EQ(automation::toLong(picture->invoke(u"Type", InvokeKind::get, {})), 1);
    EXPECT_TRUE(services_.pictures.save(picture, path(u"out.bmp")));
    EXPECT_EQ(services_.files.read(path(u"out.bmp")), bitmap);
    EXPECT_FALSE(services_.pictures.load(path(u"none.bmp")));
    EXPECT_FALSE(services_.pictures.save(nullptr, path(u"out.bmp")));
}

TEST_F(Machine, CreatesRegisteredClassesOnly) {
    EXPECT_TRUE(services_.objects.create(u"scripting.DICTIONARY"));
    for (const char16_t* name : {u"No.Such.Class", u"", u"{EE09B103-97E0-11CF-978F-00A02463E06F}",
                                 u"new:{EE09B103-97E0-11CF-978F-00A02463E06F}", u"CLSID\\Scripting.Dictionary"}) {
        EXPECT_EQ(errorOf([&] { services_.objects.create(name); }), 429);
    }
}

// A class with type information, whose members take references of their own types.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // COM interfaces have no virtual destructor
class TypedObject final : public IDispatch {
public:
    TypedObject() {
        PARAMDATA parameters[] = {{const_cast<wchar_t*>(L"text"), VT_BYREF | VT_BSTR},
                                  {const_cast<wchar_t*>(L"number"), VT_BYREF | VT_I4},
                                  {const_cast<wchar_t*>(L"value"), VT_R8}};
        METHODDATA method{const_cast<wchar_t*>(L"Change"), parameters, 7, 0, CC_STDCALL, 3, DISPATCH_METHOD, VT_EMPTY};
        INTERFACEDATA data{&method, 1};
        CreateDispTypeInfo(&data, LOCALE_USER_DEFAULT, types_.put());
    }

    VARTYPE seen[3] = {};

    STDMETHODIMP QueryInterface(REFIID id, void** result) override {
        *result = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
        return *result ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 1, S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** result) override {
        *result = ComPtr<ITypeInfo>(types_).detach();
        return S_OK;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return DispGetIDsOfNames(types_.get(), names, count, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*, UINT*) override {
        if (id != 7 || given->cArgs != 3) return DISP_E_BADPARAMCOUNT;
        for (UINT i = 0; i < 3; ++i) seen[i] = V_VT(&given->rgvarg[2 - i]);
        if (seen[0] != (VT_BYREF | VT_BSTR) || seen[1] != (VT_BYREF | VT_I4)) return DISP_E_TYPEMISMATCH;
        SysReAllocString(V_BSTRREF(&given->rgvarg[2]), L"changed");
        ++*V_I4REF(&given->rgvarg[1]);
        return S_OK;
    }

private:
    ComPtr<ITypeInfo> types_;
};
#pragma GCC diagnostic pop

TEST_F(Machine, PassesReferencesOfTheDeclaredTypes) {
    TypedObject typed;
    const auto foreign = wrapForeign(&typed);
    std::vector<Variant> arguments{Variant(u"text"), Variant(std::int16_t{41}), Variant(0.5)};
    foreign->invoke(u"Change", InvokeKind::method, arguments);
    EXPECT_TRUE(arguments[0].identical(Variant(u"changed")));
    EXPECT_TRUE(arguments[1].identical(Variant(42)));
    EXPECT_EQ(typed.seen[2], VT_R8);
    arguments[1] = Variant(u"no number");
    EXPECT_EQ(errorOf([&] { foreign->invoke(u"Change", InvokeKind::method, arguments); }), 13);
}

}  // namespace
}  // namespace velmor::platform

#endif
