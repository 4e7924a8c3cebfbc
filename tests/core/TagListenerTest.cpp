// What a listener hears of an evaluation, and that listening changes nothing.

#include "core/TagListener.h"

#include <gtest/gtest.h>

#include "core/TestTags.h"

namespace velmor::test {
namespace {

// "{start ... length}" is a text ("!": apart, "~": its results move), "(origin index@position ... start+length)" a tag.
class Told final : public TagListener {
public:
    void tagBegins(const HeardTag& tag) noexcept override {
        text += std::string("(") + "afph"[static_cast<int>(tag.origin)] + std::to_string(tag.index) + "@" +
                std::to_string(tag.position) + " ";
    }
    void tagEnds(std::size_t start, std::u16string_view result) noexcept override {
        text += std::to_string(start) + "+" + std::to_string(result.size()) + ")";
    }
    void textBegins(std::size_t start, bool isApart) noexcept override {
        text += (isApart ? "{!" : "{") + std::to_string(start) + " ";
    }
    void textMoves() noexcept override { text += "~"; }
    void resultMoves(PlaceShifts) noexcept override {}
    void textEnds(std::size_t length) noexcept override { text += " " + std::to_string(length) + "}"; }

    std::string text;
};

TEST(TagListener, HearsTagsOriginsAndPlaces) {
    TagTest on;
    on.addHandler(u"H", 4, [](kvTag&) { return automation::Variant(tagged(u"[PROPERTY:n=x:]")); });
    on.addHandler(u"P", 4, [](kvTag& tag) { return automation::Variant(tag.ProcessName(u"TAG>PROPERTY:n=x:")); });
    on.set(u"p", u"<[PROPERTY:n=x:]>");
    on.set(u"file", u"C:\\f.txt");
    on.services.files.set(u"C:\\f.txt", "-<KV:TAG>PROPERTY:p=:</KV>");
    const struct {
        std::u16string_view text;
        std::string_view told;
    } cases[] = {
        {u"a[PROPERTY:n=x:]b", "{0 (a1@2 1+1) 3}"},
        {u"[PROPERTY:none:]", "{0 (a1@1 0+1) 1}"},
        {u"ab[PROPERTY:p=:]", "{0 (a1@3 {2 (p1@2 3+1) 3}2+3) 5}"},
        {u"[INCLUDE=[PROPERTY:file=:]:]", "{0 (a1@1 {!0 (a1@1 0+8) 8}{0 (f1@2 {1 (p1@2 2+1) 3}1+3) 4}0+4) 4}"},
        {u"z<KV:H>a:</KV>", "{0 (a1@2 {0 (h1@1 0+1) 1}1+1) 2}"},
        {u"z<KV:P>a:</KV>", "{0 (a1@2 (a0@0 0+1)1+1) 2}"},
        {u"[PROPERTY:m=y][PROPERTY:n=x:]", "{0 ~(a1@1 0+1)(a2@26 1+1) 2}"},
    };
    for (const auto& each : cases) {
        const std::u16string unheard = on.evaluate(each.text);
        Told told;
        EXPECT_EQ(on.evaluate(each.text), unheard) << toUtf8(each.text);
        EXPECT_EQ(told.text, each.told) << toUtf8(each.text);
    }
}

}  // namespace
}  // namespace velmor::test
