#include "common/kvLibrary.h"

#include <gtest/gtest.h>

#include "automation/Variant.h"
#include "platform/MemoryServices.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::Variant;

class Library : public testing::Test {
protected:
    Variant call(std::u16string_view name, std::vector<Variant> arguments = {}) {
        return library_->invoke(name, automation::InvokeKind::method, arguments);
    }

    platform::MemoryServices services_;
    automation::ObjectRef library_ = std::make_shared<kvLibrary>(services_);
};

TEST_F(Library, ServesItsMembers) {
    services_.registry.set(u"SOFTWARE\\Sample", u"Option", u"7");
    services_.files.set(u"C:\\a.txt", "caf\xe9");
    const struct {
        const char16_t* name;
        std::vector<Variant> arguments;
        Variant result;
    } cases[] = {
        {u"registryvalue", {u"SOFTWARE\\Sample", u"OPTION"}, u"7"},
        {u"RegistryValue", {u"SOFTWARE\\Sample", u"None", u"1"}, u"1"},
        {u"ToNumber", {u" 7.5 "}, 7.5},
        {u"ToNumber", {u"seven"}, 0.0},
        {u"IsTrue", {u"Yes"}, true},
        {u"MachineName", {}, u"SRV01"},
        {u"CommonDataFolder", {}, u"C:\\ProgramData"},
        {u"TemporaryFolder", {}, u"C:\\Temp"},
        {u"NewGuid", {}, u"{00000001-0000-4000-8000-000000000000}"},
        {u"MakeFolder", {u"C:\\new"}, true},
        {u"FileExists", {u"C:\\a.txt"}, true},
        {u"ReadTextFile", {u"C:\\a.txt"}, u"caf\u00e9"},
        {u"ReadTextFile", {u"C:\\none.txt"}, u""},
        {u"SaveTextFile", {u"C:\\a.rtf", u"{\\rtf1 \u00e9\u0141}"}, true},
        {u"ReadTextFile", {u"C:\\a.rtf"}, u"{\\rtf1 \u00e9\\u321?}"},
        {u"SaveTextFile", {u"C:\\a.utf8", u"\ufeff\u0141", true}, true},
        {u"ReadTextFile", {u"C:\\a.utf8"}, u"\u0141"},
        {u"AppendText", {u"C:\\log", u"line", false}, false},
        {u"AppendText", {u"C:\\log", u"line"}, true},
        {u"TemporaryName", {u"~kvp", u".tmp"}, u"C:\\Temp\\~kvp00000002000040008000000000000000.tmp"},
        {u"FromBase64", {call(u"Base64", {u"\u20ac"})}, u"\u20ac"},
        {u"Hexadecimal", {u"\u20ac"}, u"E282AC"},
        {u"FromHexadecimal", {u"e282AC"}, u"\u20ac"},
        {u"Decompress", {call(u"Compress", {u"\u20ac"})}, u"\u20ac"},
        {u"Decipher", {call(u"Encipher", {u"\u20ac", u"pass"}), u"pass"}, u"\u20ac"},
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(call(row.name, row.arguments).identical(row.result)) << (&row - cases);
    }
    const std::pair<const char16_t*, std::vector<Variant>> refused[] = {{u"FromBase64", {u"!"}},
                                                                        {u"SaveTextFile", {u"C:\\a.txt", u"\u0141"}},
                                                                        {u"Decipher", {u"no cipher", u"pass"}},
                                                                        {u"Encipher", {u"text", u""}}};
    for (const auto& [name, arguments] : refused) {
        try {
            call(name, arguments);
            ADD_FAILURE();
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 5);
        }
    }
}

}  // namespace
}  // namespace velmor
