// Property texts on a machine whose user writes numbers with a decimal comma.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "automation/PlatformConversions.h"
#include "platform/MemoryServices.h"
#include "platform/win32/Conversions.h"
#include "platform/win32/Windows.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

using automation::Currency;
using automation::Decimal;
using automation::Variant;

class UserSetting {
public:
    UserSetting(LCTYPE type, const wchar_t* value) : type_(type) {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, type_, old_, static_cast<int>(std::size(old_)));
        SetLocaleInfoW(LOCALE_USER_DEFAULT, type_, value);
        forgetCached();
    }
    ~UserSetting() {
        SetLocaleInfoW(LOCALE_USER_DEFAULT, type_, old_);
        forgetCached();
    }
    UserSetting(const UserSetting&) = delete;
    UserSetting& operator=(const UserSetting&) = delete;

private:
    // The automation library remembers the signs of the locale that it used last.
    static void forgetCached() {
        double number = 0;
        wchar_t one[] = L"1";
        VarR8FromStr(one, MAKELCID(MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH), SORT_DEFAULT), 0, &number);
    }

    LCTYPE type_;
    wchar_t old_[8] = {};
};

class DecimalComma : public testing::Test {
protected:
    void SetUp() override { platform::installConversions(); }
    void TearDown() override { automation::installPlatformConversions(nullptr); }

    UserSetting decimal_{LOCALE_SDECIMAL, L","};
    UserSetting thousand_{LOCALE_STHOUSAND, L"."};
    platform::MemoryServices services_;
    std::shared_ptr<privProperties> collection_ = std::make_shared<privProperties>(services_);
};

TEST_F(DecimalComma, ReadsNumbersAsEveryMachineDoes) {
    collection_->Build(
        u"a=6458.88$:b=0.2#:c=!12.5!:d=7.25:e=1234,5#:f=1.5&:g=7,25:h=1.234:i=922337203685477.5807$:"
        u"j=1234567890123.4567$:k=!79228162514264337593543950335!:l=" +
        std::u16string(400, u'9') + u"#:");
    // clang-format off
    const Variant wanted[] = {
        Currency{64588800}, 0.2, Decimal{0, 125, 1, false}, 7.25, 1234.5, 1.5, u"7,25", 1.234,
        Currency{std::numeric_limits<std::int64_t>::max()}, Currency{12345678901234567},
        Decimal{~0U, std::numeric_limits<std::uint64_t>::max(), 0, false}, std::u16string(400, u'9') + u"#"};
    // clang-format on
    for (std::int32_t i = 0; i < collection_->Count(); ++i) {
        EXPECT_TRUE(collection_->Item(i + 1)->Value().identical(wanted[i])) << toUtf8(collection_->Item(i + 1)->Name());
    }
}

TEST_F(DecimalComma, WritesNumbersThatEveryMachineReads) {
    using Double = std::numeric_limits<double>;
    // clang-format off
    const Variant values[] = {
        1234567.5, 0.5, 1e-5, Double::max(), Double::denorm_min(), 1234.5f, std::numeric_limits<float>::max(),
        std::numeric_limits<float>::denorm_min(), Currency{12345678901234567},
        Currency{std::numeric_limits<std::int64_t>::min()},
        Decimal{~0U, std::numeric_limits<std::uint64_t>::max(), 28, true}};
    // clang-format on
    for (const Variant& value : values) {
        collection_->Add(u"n", value, true);
        const std::u16string text = collection_->Stored();
        EXPECT_EQ(text.find(u'.') == text.npos || text.find(u',') == text.npos, true) << toUtf8(text);
        for (const bool isHere : {true, false}) {
            if (!isHere) automation::installPlatformConversions(nullptr);
            collection_->Build(text);
            EXPECT_EQ(collection_->Item(1)->ValueType(), value.typeCode()) << toUtf8(text);
            platform::installConversions();
            EXPECT_EQ(toUtf8(collection_->Stored()), toUtf8(text));
        }
    }
    collection_->Add(u"n", 1234567.5, true);
    EXPECT_EQ(collection_->Stored(), u"n=1234567,5#:");
}

}  // namespace
}  // namespace velmor
