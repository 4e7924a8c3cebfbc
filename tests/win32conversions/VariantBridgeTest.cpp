#include "platform/win32/VariantBridge.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "text/Error.h"
//
#include "extension/ErrorNumbers.h"  // after windows.h

namespace velmor::platform {
namespace {

using automation::Variant;

class Plain : public automation::Object {
public:
    Variant invoke(std::u16string_view, automation::InvokeKind, std::span<Variant>) override { return {}; }
    std::u16string typeName() const override { return u"Plain"; }
};

Variant thereAndBack(const Variant& value) {
    return fromVariant(*toVariant(value));
}

TEST(VariantBridge, EveryPlainTypeSurvivesARoundTrip) {
    constexpr auto wholeRange = std::numeric_limits<std::uint64_t>::max();
    // clang-format off
    const std::pair<Variant, VARTYPE> cases[] = {
        {Variant(), VT_EMPTY}, {automation::Null{}, VT_NULL}, {std::int16_t{-5}, VT_I2}, {-70000, VT_I4}, {1.5f, VT_R4},
        {-0.1, VT_R8}, {automation::Currency{std::numeric_limits<std::int64_t>::min()}, VT_CY}, {u"", VT_BSTR},
        {std::u16string(u"a\0b\xD800", 4), VT_BSTR}, {automation::Date{-1.25}, VT_DATE}, {true, VT_BOOL},
        {automation::ErrorCode{2042}, VT_ERROR}, {Variant::missing(), VT_ERROR}, {false, VT_BOOL},
        {automation::Decimal{0xFFFFFFFF, wholeRange, 28, true}, VT_DECIMAL}, {std::uint8_t{255}, VT_UI1}};
    // clang-format on
    for (const auto& [value, type] : cases) {
        const ScopedVariant native = toVariant(value);
        EXPECT_EQ(native->vt, type);
        EXPECT_TRUE(fromVariant(*native).identical(value)) << type;
    }
}

TEST(VariantBridge, ObjectsKeepTheirIdentity) {
    const auto object = std::make_shared<Plain>();
    EXPECT_EQ(thereAndBack(Variant(object)).object(), object);
    EXPECT_EQ(thereAndBack(Variant(automation::ObjectRef())).typeCode(), 9);
    // Also as an IUnknown, where only our own classes are objects.
    ScopedVariant native = toVariant(Variant(object));
    native->vt = VT_UNKNOWN;
    EXPECT_EQ(fromVariant(*native).object(), object);
}

TEST(VariantBridge, AForeignUnknownIsADataObject) {
    ComPtr<ICreateTypeLib2> library;
    ASSERT_TRUE(SUCCEEDED(CreateTypeLib2(SYS_WIN32, L"bridge.tlb", library.put())));
    ScopedVariant native;
    native->vt = VT_UNKNOWN;
    V_UNKNOWN(native.get()) = library.get();
    library->AddRef();
    {
        const Variant value = fromVariant(*native);
        EXPECT_EQ(value.typeCode(), 13);
        const ScopedVariant again = toVariant(value);
        EXPECT_EQ(again->vt, VT_UNKNOWN);
        EXPECT_EQ(V_UNKNOWN(again.get()), library.get());
    }
    library->AddRef();
    EXPECT_EQ(library->Release(), 2u);  // ours and the native variant's
}

TEST(VariantBridge, TypesWithoutACounterpartAreWidened) {
    using automation::Decimal;
    const struct {
        VARTYPE type;
        std::uint64_t bits;
        Variant value;
    } cases[] = {
        {VT_I1, 0xFF, std::int16_t{-1}},
        {VT_UI2, 0xFFFF, 65535},
        {VT_INT, 0xFFFFFFFF, -1},
        {VT_UI4, 5, 5},
        {VT_UINT, 0xFFFFFFFF, Decimal{0, 0xFFFFFFFF, 0, false}},
        {VT_I8, 0xFFFFFFFF80000000, std::numeric_limits<std::int32_t>::min()},
        {VT_I8, 0xFFFFFFFF7FFFFFFF, Decimal{0, 0x80000001, 0, true}},
        {VT_I8, 0x8000000000000000, Decimal{0, 0x8000000000000000, 0, true}},
        {VT_UI8, 0xFFFFFFFFFFFFFFFF, Decimal{0, 0xFFFFFFFFFFFFFFFF, 0, false}},
    };
    for (const auto& each : cases) {
        VARIANT native;
        VariantInit(&native);
        native.vt = each.type;
        V_UI8(&native) = each.bits;
        EXPECT_TRUE(fromVariant(native).identical(each.value)) << each.type;
    }
}

TEST(VariantBridge, ArraysAreCarriedWhole) {
    ScopedVariant native;
    SAFEARRAYBOUND bounds[] = {{2, 1}, {3, -1}};
    V_ARRAY(native.get()) = SafeArrayCreate(VT_BSTR, 2, bounds);
    native->vt = VT_ARRAY | VT_BSTR;
    LONG indices[] = {2, 0};
    ASSERT_EQ(SafeArrayPutElement(V_ARRAY(native.get()), indices, makeBstr(u"2,0")), S_OK);

    const Variant value = fromVariant(*native);
    EXPECT_EQ(automation::typeNameOf(value), u"String()");
    const ScopedVariant back = toVariant(value);
    ASSERT_EQ(back->vt, VT_ARRAY | VT_BSTR);
    BSTR element = nullptr;
    ASSERT_EQ(SafeArrayGetElement(V_ARRAY(back.get()), indices, &element), S_OK);
    EXPECT_EQ(viewOf(element), u"2,0");
    SysFreeString(element);
}

TEST(VariantBridge, ErrorsPassInBothDirections) {
    EXPECT_EQ(com::resultOf(5), static_cast<HRESULT>(0x800A0005u));
    EXPECT_EQ(com::errorNumberOf(static_cast<HRESULT>(0x800A0005u)), 5);
    EXPECT_EQ(com::errorNumberOf(DISP_E_TYPEMISMATCH), 13);
    EXPECT_EQ(com::errorNumberOf(E_OUTOFMEMORY), 7);
    EXPECT_EQ(com::errorNumberOf(com::resultOf(E_ACCESSDENIED)), E_ACCESSDENIED);
    EXPECT_EQ(com::resultOf(0), E_FAIL);

    EXCEPINFO exception{};
    exception.scode = static_cast<SCODE>(0x800A0005u);
    exception.bstrSource = makeBstr(u"Someone");
    exception.bstrDescription = makeBstr(u"said so");
    const Error error = errorOf(DISP_E_EXCEPTION, &exception);
    EXPECT_EQ(error.number(), 5);
    EXPECT_EQ(error.source() + error.description(), u"Someonesaid so");
    EXPECT_EQ(exception.bstrSource, nullptr);
}

}  // namespace
}  // namespace velmor::platform
