#include "platform/win32/VariantBridge.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "text/Error.h"

namespace velmor::platform {
namespace {

using automation::Array;
using automation::Variant;
using automation::VariantType;

class Plain : public automation::Object {
public:
    Variant invoke(std::u16string_view, automation::InvokeKind, std::span<Variant>) override { return {}; }
    std::u16string typeName() const override { return u"Plain"; }
};

Variant thereAndBack(const Variant& value) {
    return fromVariant(*toVariant(value));
}

TEST(VariantBridge, EveryPlainTypeComesBack) {
    constexpr auto kAll = std::numeric_limits<std::uint64_t>::max();
    const Variant values[] = {
        Variant(),
        Variant(automation::Null{}),
        Variant(std::int16_t{-5}),
        Variant(std::int32_t{-70000}),
        Variant(1.5f),
        Variant(-0.1),
        Variant(automation::Currency{std::numeric_limits<std::int64_t>::min()}),
        Variant(automation::Date{-1.25}),
        Variant(u""),
        Variant(std::u16string(u"a\0b\xD800", 4)),
        Variant(automation::ErrorCode{2042}),
        Variant::missing(),
        Variant(true),
        Variant(false),
        Variant(automation::Decimal{0xFFFFFFFF, kAll, 28, true}),
        Variant(std::uint8_t{255}),
    };
    const VARTYPE types[] = {VT_EMPTY, VT_NULL, VT_I2,    VT_I4,    VT_R4,   VT_R8,   VT_CY,      VT_DATE,
                             VT_BSTR,  VT_BSTR, VT_ERROR, VT_ERROR, VT_BOOL, VT_BOOL, VT_DECIMAL, VT_UI1};
    for (std::size_t each = 0; each < std::size(values); ++each) {
        const ScopedVariant native = toVariant(values[each]);
        EXPECT_EQ(native->vt, types[each]);
        EXPECT_TRUE(fromVariant(*native).identical(values[each])) << each;
    }
}

TEST(VariantBridge, ObjectsKeepTheirIdentity) {
    const auto object = std::make_shared<Plain>();
    EXPECT_EQ(thereAndBack(Variant(object)).object(), object);
    EXPECT_EQ(thereAndBack(Variant(automation::ObjectRef())).typeCode(), 9);
    // Also as an IUnknown, where only our own are objects.
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

struct WideCase {
    VARTYPE type;
    std::uint64_t bits;
    Variant value;
};

TEST(VariantBridge, TypesWithoutACounterpartAreWidened) {
    const WideCase cases[] = {
        {VT_I1, 0xFF, Variant(std::int16_t{-1})},
        {VT_UI2, 0xFFFF, Variant(std::int32_t{65535})},
        {VT_INT, 0xFFFFFFFF, Variant(std::int32_t{-1})},
        {VT_UI4, 5, Variant(std::int32_t{5})},
        {VT_UINT, 0xFFFFFFFF, Variant(automation::Decimal{0, 0xFFFFFFFF, 0, false})},
        {VT_I8, 0xFFFFFFFF80000000, Variant(std::numeric_limits<std::int32_t>::min())},
        {VT_I8, 0xFFFFFFFF7FFFFFFF, Variant(automation::Decimal{0, 0x80000001, 0, true})},
        {VT_I8, 0x8000000000000000, Variant(automation::Decimal{0, 0x8000000000000000, 0, true})},
        {VT_UI8, 0xFFFFFFFFFFFFFFFF, Variant(automation::Decimal{0, 0xFFFFFFFFFFFFFFFF, 0, false})},
    };
    for (const WideCase& each : cases) {
        VARIANT native;
        VariantInit(&native);
        native.vt = each.type;
        V_UI8(&native) = each.bits;
        EXPECT_TRUE(fromVariant(native).identical(each.value)) << each.type;
    }
}

Variant matrix() {
    auto array = std::make_shared<Array>();
    array->elementType = VariantType::string;
    array->bounds = {{1, 2}, {-1, 3}};
    for (const auto* each : {u"1,-1", u"2,-1", u"1,0", u"2,0", u"1,1", u"2,1"}) array->elements.emplace_back(each);
    return Variant(std::shared_ptr<const Array>(array));
}

TEST(VariantBridge, ArraysKeepBoundsAndOrder) {
    const Variant sent = matrix();
    const ScopedVariant native = toVariant(sent);
    ASSERT_EQ(native->vt, VT_ARRAY | VT_BSTR);
    LONG indices[] = {2, 0};
    BSTR element = nullptr;
    ASSERT_TRUE(SUCCEEDED(SafeArrayGetElement(V_ARRAY(native.get()), indices, &element)));
    EXPECT_EQ(viewOf(element), u"2,0");
    SysFreeString(element);

    const Variant back = fromVariant(*native);
    const Array& array = **back.get<std::shared_ptr<const Array>>();
    const Array& original = **sent.get<std::shared_ptr<const Array>>();
    EXPECT_EQ(array.elementType, original.elementType);
    EXPECT_EQ(array.bounds, original.bounds);
    ASSERT_EQ(array.elements.size(), original.elements.size());
    for (std::size_t each = 0; each < array.elements.size(); ++each) {
        EXPECT_TRUE(array.elements[each].identical(original.elements[each])) << each;
    }
}

TEST(VariantBridge, ArraysOfVariantsNestUpToALimit) {
    Variant inner(std::int32_t{1});
    for (int level = 0; level < 40; ++level) {
        auto array = std::make_shared<Array>();
        array->bounds = {{0, 1}};
        array->elements = {inner};
        inner = Variant(std::shared_ptr<const Array>(array));
    }
    EXPECT_EQ(thereAndBack(inner).typeCode(), 8192 + 12);
    for (int level = 0; level < 1000; ++level) {
        auto array = std::make_shared<Array>();
        array->bounds = {{0, 1}};
        array->elements = {inner};
        inner = Variant(std::shared_ptr<const Array>(array));
    }
    EXPECT_THROW(toVariant(inner), Error);
}

TEST(VariantBridge, AnArrayThatContradictsItselfIsRefused) {
    auto array = std::make_shared<Array>();
    array->elementType = VariantType::longInteger;
    array->bounds = {{0, 2}};
    array->elements = {Variant(std::int32_t{1})};
    EXPECT_THROW(toVariant(Variant(std::shared_ptr<const Array>(array))), Error);
    array->elements.emplace_back(u"no long");
    EXPECT_THROW(toVariant(Variant(std::shared_ptr<const Array>(array))), Error);
}

// A by-reference argument of that type.
template <class T>
VARIANT referenceTo(VARTYPE type, T* data) {
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    V_BYREF(&reference) = data;
    return reference;
}

TEST(VariantBridge, ReferencesAreFollowedAndWrittenBack) {
    BSTR text = makeBstr(u"before");
    VARIANT textReference = referenceTo(VT_BSTR, &text);
    EXPECT_TRUE(fromVariant(textReference).identical(Variant(u"before")));
    EXPECT_TRUE(assignReference(textReference, Variant(u"after")));
    EXPECT_EQ(viewOf(text), u"after");
    EXPECT_TRUE(assignReference(textReference, Variant(1.5)));
    EXPECT_EQ(viewOf(text), u"1.5");
    EXPECT_FALSE(assignReference(textReference, Variant(automation::Null{})));
    EXPECT_EQ(viewOf(text), u"1.5");
    SysFreeString(text);

    LONG number = 5;
    VARIANT numberReference = referenceTo(VT_I4, &number);
    EXPECT_TRUE(assignReference(numberReference, Variant(u"70000")));
    EXPECT_EQ(number, 70000);
    EXPECT_FALSE(assignReference(numberReference, Variant(u"abc")));
    EXPECT_EQ(number, 70000);

    SHORT small[] = {1, 2};
    VARIANT smallReference = referenceTo(VT_I2, &small[0]);
    EXPECT_TRUE(assignReference(smallReference, Variant(std::int16_t{-1})));
    EXPECT_EQ(small[0], -1);
    EXPECT_EQ(small[1], 2);

    DECIMAL decimal{};
    VARIANT decimalReference = referenceTo(VT_DECIMAL, &decimal);
    EXPECT_TRUE(assignReference(decimalReference, Variant(u"-12.5")));
    EXPECT_TRUE(fromVariant(decimalReference).identical(Variant(automation::Decimal{0, 125, 1, true})));
    EXPECT_EQ(decimal.wReserved, 0);
}

TEST(VariantBridge, VariantReferencesTakeAnyType) {
    ScopedVariant variable = toVariant(Variant(u"before"));
    VARIANT reference = referenceTo(VT_VARIANT, variable.get());
    EXPECT_TRUE(assignReference(reference, Variant(std::int32_t{7})));
    EXPECT_TRUE(fromVariant(reference).identical(Variant(std::int32_t{7})));
    EXPECT_TRUE(assignReference(reference, matrix()));
    EXPECT_EQ(fromVariant(reference).typeCode(), 8192 + 8);

    // A variable that is itself a reference to a text stands for that text.
    BSTR text = makeBstr(u"before");
    VARIANT inner = referenceTo(VT_BSTR, &text);
    VARIANT outer = referenceTo(VT_VARIANT, &inner);
    EXPECT_TRUE(assignReference(outer, Variant(u"after")));
    EXPECT_TRUE(fromVariant(outer).identical(Variant(u"after")));
    SysFreeString(text);

    VARIANT value = *variable;
    EXPECT_FALSE(assignReference(value, Variant(std::int32_t{1})));  // no reference
}

TEST(VariantBridge, ObjectReferencesLetGoOfWhatTheyHeld) {
    const auto first = std::make_shared<Plain>();
    const auto second = std::make_shared<Plain>();
    IDispatch* held = faceOf(first);
    const ComPtr<IDispatch> watch(held);
    VARIANT reference = referenceTo(VT_DISPATCH, &held);
    EXPECT_TRUE(assignReference(reference, Variant(second)));
    EXPECT_EQ(fromVariant(reference).object(), second);
    watch->AddRef();
    EXPECT_EQ(watch->Release(), 1u);
    held->Release();
}

TEST(VariantBridge, ErrorsPassInBothDirections) {
    EXPECT_EQ(hresultOf(Error(5, u"", u"")), static_cast<HRESULT>(0x800A0005u));
    EXPECT_EQ(errorNumberOf(static_cast<HRESULT>(0x800A0005u)), 5);
    EXPECT_EQ(errorNumberOf(DISP_E_TYPEMISMATCH), 13);
    EXPECT_EQ(errorNumberOf(E_OUTOFMEMORY), 7);
    EXPECT_EQ(errorNumberOf(hresultOf(Error(E_ACCESSDENIED, u"", u""))), E_ACCESSDENIED);
    EXPECT_EQ(hresultOf(Error(0, u"", u"")), E_FAIL);

    EXCEPINFO exception{};
    exception.scode = static_cast<SCODE>(0x800A0005u);
    exception.bstrSource = makeBstr(u"Someone");
    exception.bstrDescription = makeBstr(u"said so");
    const Error error = errorOf(DISP_E_EXCEPTION, &exception);
    EXPECT_EQ(error.number(), 5);
    EXPECT_EQ(error.source(), u"Someone");
    EXPECT_EQ(error.description(), u"said so");
    EXPECT_EQ(exception.bstrSource, nullptr);
    EXPECT_EQ(errorOf(DISP_E_OVERFLOW, nullptr).number(), 6);
}

}  // namespace
}  // namespace velmor::platform
