// The mistakes of templates, each in its smallest form.

#include "check/TemplateCheck.h"

#include <gtest/gtest.h>

#include "check/Annotation.h"
#include "check/OutputCheck.h"
#include "check/TagRepair.h"
#include "platform/MemoryServices.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

class Catalogue final : public automation::Object {
public:
    automation::Variant invoke(std::u16string_view name, automation::InvokeKind,
                               std::span<automation::Variant> arguments) override {
        if (name == u"Interface") return std::int32_t{4};
        if (name == u"CommandList") return u"DATE:TEXT:";
        if (name == u"ParameterList") return u"CASE:";
        if (name == u"ParameterValueList" && arguments.size() > 1) return u"UPPER:LOWER:";
        return u"";
    }
    std::u16string typeName() const override { return u"Catalogue"; }
};

// "LINE:COLUMN CODE" of each diagnostic, with the file if it is not the template, and the hint in parentheses.
std::string lines(const std::vector<Diagnostic>& found) {
    std::string lines;
    for (const Diagnostic& each : found) {
        if (!lines.empty()) lines += ", ";
        if (each.place.file != u"t") lines += "included ";
        lines += std::to_string(each.place.line) + ":" + std::to_string(each.place.column) + " " +
                 toUtf8(codeText(each.code));
        if (!each.hint.empty()) lines += " (" + toUtf8(each.hint) + ")";
    }
    return lines;
}

class Checked {
public:
    Checked() {
        services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Handlers", u"FORMAT", u"Test.Format");
        services.objects.add(u"Test.Format", [] { return std::make_shared<Catalogue>(); });
    }

    void add(std::u16string_view name, std::string_view bytes) {
        services.files.write(
            std::u16string(services.folders.component()) + services.folders.separator() + std::u16string(name), bytes);
    }

    std::string operator()(const std::u16string& text) {
        TemplateCheck check(services, given);
        const std::vector<Diagnostic> found = check.run(u"t", text).diagnostics;
        if (!found.empty()) last = found.back();
        return lines(found);
    }

    platform::MemoryServices services;
    std::shared_ptr<privProperties> given;
    Diagnostic last{};
};

struct Row {
    std::u16string text;
    std::string expected;
};

TEST(TemplateCheck, FindsMistakesOfMarkup) {
    const Row rows[] = {
        {u"Dear <KV:TAG>PROPERTY:a=:</KV>, <KV:TAG>PROPERTY:b=x <KV:TAG>PROPERTY:c=:</KV>:</KV>", ""},
        {u"a\r\nb <KV:TAG>PROPERTY:a=:", "2:3 KV102"},
        {u"a</KV>", "1:2 KV103"},
        {u"<KV:TAG>PROPERTY:a=x: and <KV:TAG>PROPERTY:b=:</KV> more </KV>", "1:1 KV101"},
        {u"<KV:TAG>PROPERTY:a=x: one\ntwo </KV>", "1:1 KV101"},
        {u"<KV:TAG>SETPROPERTY:\n  a=x\n  y:\n  PREPROCESS=False:\n</KV>", ""},
        {u"<KV:TAG>SETPROPERTY:a=\"one: <KV:TAG>PROPERTY:b=:</KV>\":</KV>", ""},
        {u"<KV:PROPERTY:a=:</KV>", "1:1 KV108"},
        {u"<KV:TAG>PROPERTY:a=:<KV>", "1:1 KV102, 1:21 KV109 (the closing marker is </KV>)"},
        {u"<KV:TAG>PROPERTY:a=\x201Cx\x201D:</KV>", "1:1 KV106"},
    };
    for (const Row& row : rows) EXPECT_EQ(Checked()(row.text), row.expected) << toUtf8(row.text);
}

TEST(TemplateCheck, SeesRtfAsItsAuthorDoes) {
    const Row rows[] = {
        {u"{\\rtf1 <KV:TAG>PROPERTY:a=:</KV>}", ""},
        {u"{\\rtf1 <KV:TAG>PROP}{\\b ERTY:a=:</KV>}", "1:8 KV104, 1:20 KV601"},
        {u"{\\rtf1{<K}{\\b V:TAG>PROPERTY:a=:</KV>}}", "1:8 KV104"},
        {u"{\\rtf1 <KV:TAG>PROPERTY:a=\r\n:</KV>}", "1:8 KV105"},
        {u"{\\rtf1 <KV:TAG>PROPERTY:a=\\'93x\\rdblquote :</KV>}", "1:8 KV106"},
        {u"{\\rtf1 <KV:TAG>PROPERTY:a=\\'e4\\u228?:</KV>}", "1:8 KV107"},
        {u"{\\rtf1{\\*\\x <KV:TAG>PROPERTY:a=:}{\\pict 3c}{\\header <KV:H>a:</KV>}}", "1:13 KV102, 1:53 KV201"},
        {u"{\\rtf1 {a}", "1:1 KV601"},
        {u"{\\rtf1\\trowd\\cellx1\\intbl a\\cell b\\cell\\row}", "1:40 KV602"},
        {u"{\\rtf1\\trowd\\cellx1\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\cellx1\\nestrow}"
         u"\\pard\\intbl b\\cell c\\cell\\row}",
         "1:108 KV602"},
        {u"{\\rtf1\\trowd\\cellx1\\cellx2\\intbl a\\cell\\row\\intbl b\\cell}", "1:40 KV602, 1:52 KV602"},
        {u"{\\rtf1\\trowd\\cellx1\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\cellx1\\cellx2\\nestrow}"
         u"\\pard\\intbl\\cell\\row}",
         "1:81 KV602"},
    };
    for (const Row& row : rows) EXPECT_EQ(Checked()(row.text), row.expected) << toUtf8(row.text);
}

TEST(TemplateCheck, SaysWhereTheAuthorSeesIt) {
    const std::u16string broken = u"<KV:TAG>PROPERTY:a=: ";
    const Row rows[] = {
        {u"{\\rtf1 a\\par b\\par " + broken + u"}", "page text, paragraph 3"},
        {u"{\\rtf1 a\\par\\trowd\\cellx1\\cellx2\\intbl a\\cell b\\cell\\row\\pard\\intbl a\\cell " + broken +
             u"\\cell\\row}",
         "page text, table 1, row 2, cell 2"},
        {u"{\\rtf1{\\footerf a\\par " + broken + u"}}", "footer, paragraph 2"},
        {u"{\\rtf1 a{\\footnote " + broken + u"}}", "footnote, paragraph 1"},
    };
    for (const Row& row : rows) {
        Checked checked;
        checked(row.text);
        EXPECT_EQ(toUtf8(checked.last.seenAt), row.expected);
        EXPECT_EQ(toUtf8(checked.last.context).substr(0, 20), toUtf8(broken).substr(0, 20));
    }
}

TEST(TemplateCheck, AsksTheCatalogue) {
    const Row rows[] = {
        {u"<KV:FORMAT>DATE:CASE=upper:</KV>", ""},
        {u"<KV:FROMAT>DATE:</KV>", "1:1 KV201 (did you mean FORMAT?)"},
        {u"<KV:FORMAT>DAET:</KV>", "1:1 KV202 (did you mean DATE?)"},
        {u"<KV:TAG>PROPRETY:a=:</KV>", "1:1 KV202 (did you mean PROPERTY?)"},
        {u"<KV:FORMAT>DATE:KASE=UPPER:</KV>", "1:1 KV203 (did you mean CASE?)"},
        {u"<KV:FORMAT>DATE:CASE=LOVER:</KV>", "1:1 KV204 (did you mean LOWER?)"},
        {u"<KV:TAG>SETPROPERTY:a=b:PREPROCES=False:</KV>", "1:1 KV203 (did you mean PREPROCESS?)"},
        {u"<KV:TAG>SETPROPERTY:a=b:PREPROCESS=yes:</KV><KV:TAG>SETPROPERTY:a=b:PREPROCESS=no:</KV>", ""},
        {u"<KV:TAG>SETPROPERTY:a=b:PREPROCESS=false:</KV><KV:TAG>SETPROPERTY:a=b:PREPROCESS=x:</KV>", "1:47 KV204"},
    };
    for (const Row& row : rows) EXPECT_EQ(Checked()(row.text), row.expected) << toUtf8(row.text);
}

TEST(TemplateCheck, KnowsWhichPropertiesAreSet) {
    const Row rows[] = {
        {u"<KV:TAG>PROPERTY:Name=x:</KV><KV:TAG>PROPERTY:other=:</KV>", ""},
        {u"<KV:TAG>PROPERTY:Other:</KV>", "1:1 KV301"},
        {u"<KV:TAG>PROPERTY:Citi=:</KV><KV:TAG>PROPERTY:CITY=:</KV>", "1:1 KV302 (did you mean City?)"},
        {u"<KV:TAG>SETPROPERTY:Other=1:</KV><KV:TAG>PROPERTY:Other:</KV>", ""},
    };
    for (const Row& row : rows) {
        Checked checked;
        checked.given = std::make_shared<privProperties>(checked.services);
        checked.given->AddStr(u"City", u"x");
        EXPECT_EQ(checked(row.text), row.expected) << toUtf8(row.text);
        checked.given = nullptr;
        EXPECT_EQ(checked(row.text), "") << toUtf8(row.text);
    }
}

TEST(TemplateCheck, FollowsIncludedFiles) {
    const Row rows[] = {
        {u"<KV:TAG>INCLUDE=none.txt:</KV>", "1:1 KV401"},
        {u"<KV:TAG>INCLUDE=broken.txt:</KV>", "included 1:3 KV102"},
        {u"<KV:TAG>INCLUDE=circle.txt:</KV>", "included 1:1 KV403"},
        {u"<KV:TAG>INCLUDE=picture.png:</KV>", "1:1 KV404"},
        {u"<KV:TAG>INCLUDE=list.kvl:KEY=oen:</KV>", "1:1 KV402 (did you mean one?)"},
        {u"<KV:TAG>INCLUDE=list.kvl:INDEX=2:</KV>", ""},
        {u"<KV:TAG>INCLUDE=list.kvl:INDEX=3:</KV>", "1:1 KV402"},
        {u"<KV:TAG>INCLUDE=list.kvl:INDEX=first:</KV>", "1:1 KV204"},
        {u"<KV:TAG>INCLUDE=list.kvl:INDEX=<KV:TAG>PROPERTY:n=:</KV>:</KV>", "1:1 KV402"},
        {u"<KV:TAG>INCLUDE=<KV:TAG>PROPERTY:file=none.txt:</KV>:</KV>", ""},
        {u"<KV:TAG>SETPATH=elsewhere:</KV><KV:TAG>INCLUDE=broken.txt:</KV>", "1:32 KV401"},
        {u"<KV:TAG>PROPERTY:broken=:</KV>", "included 1:2 KV102"},
        {u"<KV:TAG>PROPERTY:ring=:</KV>", "included 1:1 KV403"},
    };
    for (const Row& row : rows) {
        Checked checked;
        checked.add(u"broken.txt", "a <KV:TAG>PROPERTY:a=:");
        checked.add(u"circle.txt", "<KV:TAG>INCLUDE=circle.txt:</KV>");
        checked.add(u"picture.png", std::string("\x89PNG\r\n\x1a\n\0", 9));
        checked.add(u"list.kvl", "one=1:two=2:");
        checked.given = std::make_shared<privProperties>(checked.services);
        checked.given->AddLng(u"n", 3);
        checked.given->AddStr(u"Broken", u" <KV:TAG>PROPERTY:a=:");
        checked.given->AddStr(u"Ring", u"<KV:TAG>PROPERTY:RING=:</KV>");
        EXPECT_EQ(checked(row.text), row.expected) << toUtf8(row.text);
        for (const SourcePlace& place : checked.last.includedFrom) EXPECT_EQ(toUtf8(place.file), "t");
    }
}

TEST(TemplateCheck, FindsTheLimitsThatEvaluationMeets) {
    const Row rows[] = {
        {u"<KV:TAG>PROPERTY:a=<KV:TAG>PROPERTY:b=:</KV>:</KV>", ""},
        {u"<KV:TAG>PROPERTY:a=<KV:TAG>PROPERTY:b=<KV:TAG>PROPERTY:c=:</KV>:</KV>:</KV>", "1:39 KV501"},
        {u"<KV:TAG>INCLUDE=two.txt:</KV><KV:TAG>PROPERTY:a=<KV:TAG>INCLUDE=two.txt:</KV>:</KV><KV:TAG>PROPERTY:a=:</"
         u"KV>",
         ""},
        {u"<KV:TAG>INCLUDE=two.txt:</KV><KV:TAG>INCLUDE=two.txt:</KV>", "1:30 KV502"},
        {u"12345<KV:TAG>PROPERTY:five=:</KV>12345678", ""},
        {u"123456<KV:TAG>PROPERTY:five=:</KV>", "1:7 KV503"},
        {u"{\\rtf1 12345678901234567890<KV:TAG>PROPERTY:five=:</KV>}", ""},
        {u"<KV:TAG>INCLUDE=C:\\elsewhere\\two.txt:</KV><KV:TAG>INCLUDE=\\\\elsewhere\\two.txt:</KV>",
         "1:1 KV405, 1:43 KV405"},
    };
    for (const Row& row : rows) {
        Checked checked;
        checked.add(u"two.txt", "<KV:TAG>PROPERTY:a=:</KV><KV:TAG>PROPERTY:a=:</KV>");
        checked.services.files.write(u"C:\\elsewhere\\two.txt", "");
        checked.given = std::make_shared<privProperties>(checked.services);
        checked.given->AddLng(u"kvTag.Max Depth", 3);
        checked.given->AddLng(u"kvTag.Max Tags", 5);
        checked.given->AddLng(u"kvTag.Max Output", 10);
        checked.given->AddStr(u"kvTag.Include Root", checked.services.folders.component());
        checked.given->AddStr(u"five", u"12345");
        EXPECT_EQ(checked(row.text), row.expected) << toUtf8(row.text);
    }
}

TEST(OutputCheck, FindsWhatIsWrongWithADocument) {
    const Row rows[] = {
        {u"{\\rtf1{\\fonttbl{\\f0 A;}{\\f7\\fnil B{\\*\\falt C};}}\\plain\\f7 a\\af1 b\\f1}", "1:60 KV701"},
        {u"{\\rtf1{\\colortbl;\\red1;}{\\stylesheet{\\s1\\cf2 A;}{\\*\\cs3 B;}}\\cf1\\cb0\\s1\\s0\\cs3 a}",
         "1:41 KV702"},
        {u"{\\rtf1{\\stylesheet{\\s1\\sbasedon0 A;}}\\s2\\cs1 a}", "1:38 KV703, 1:41 KV703"},
        {u"{\\rtf1 <KV:T>:</KV>{\\*\\korvanemergepagebreak}{\\rtf1}{\\*\\korvane\\starttable}}",
         "1:8 KV705, 1:20 KV705, 1:46 KV705"},
        {u"{\\rtf1 a\x1\x2"
         u"b\\bin3 \x1\x2\x3}\x1",
         "1:9 KV706, 1:21 KV601"},
        {u"a</KV>\x7", "1:2 KV705, 1:7 KV706"},
        {u"{\\rtf1{\\stylesheet{\\s1\\sbasedon0\\snext1 A;}{\\*\\cs2\\sbasedon222\\slink1 B;}{\\s3\\sbasedon4 C;}}}",
         "1:78 KV707"},
        {u"{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0}\\listid-5}}{\\*\\listoverridetable"
         u"{\\listoverride\\listid-5\\ls1}{\\listoverride\\listid6\\ls2}}\\ls2\\ls0\\ls3 a}",
         "1:122 KV708, 1:144 KV704"},
        {u"{\\rtf1{\\colortbl;\\caccentone\\ctint255\\red1;}}", "1:18 KV709"},
        {u"{\\rtf1{\\colortbl;\\caccentone\\red1;}{\\*\\themedata 00}}", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(lines(checkOutput(u"t", row.text).diagnostics), row.expected) << toUtf8(row.text);
    }
}

TEST(TagRepair, MakesTagsWholeAndLeavesTheRest) {
    const struct {
        std::u16string text;
        std::u16string expected;
    } rows[] = {
        {u"{\\rtf1 \\'e4<KV:TAG>PROPERTY:a=:</KV>\\u228?}", u""},
        {u"{\\rtf1{a <K{\\*\\x 1}V:T}{\\b AG>P\r\n:</K\\i0 V> b}}",
         u"{\\rtf1{a {\\*\\x 1}}{\\b \\i0 <KV:TAG>P:</KV> b}}"},
        {u"{\\rtf1 <KV:H>a=\\'93x\\u8221?:b=\\'e4:</KV>}", u"{\\rtf1 <KV:H>a=\"x\":b=\xE4:</KV>}"},
        {u"{\\rtf1 <KV:H>a\\par b:</KV> <KV:H>\\{:</KV> <KV:H>\\u1234?:</KV>}", u""},
        {u"{\\rtf1 a<KV:H>}:</KV>", u""},
        {u"<KV:H>a=\x201Cx\x2019:</KV>", u"<KV:H>a=\"x':</KV>"},
    };
    for (const auto& row : rows) {
        const std::u16string fixed = repairTags(TemplateFile(u"t", row.text, {})).source;
        EXPECT_EQ(toUtf8(fixed), toUtf8(row.expected.empty() ? row.text : row.expected));
    }
}

TEST(Annotation, LiesOutsideOfTagsInThePageText) {
    const struct {
        std::u16string text;
        std::u16string expected;  // "@" for a comment
    } rows[] = {
        {u"{\\rtf1 a {\\b b <KV:TAG>P}{\\i ROPERTY:a=<KV:H>:</KV>:</KV>}}",
         u"{\\rtf1 a {\\b b @@<KV:TAG>P}{\\i ROPERTY:a=<KV:H>:</KV>:</KV>}}"},
        {u"{\\rtf1{\\header <KV:H>:</KV>}\\par a}", u"{\\rtf1{\\header <KV:H>:</KV>}\\par @a}"},
        {u"{\\rtf1 a\\par{\\footer <KV:H>:</KV>}\\par}", u"{\\rtf1 @a\\par{\\footer <KV:H>:</KV>}\\par}"},
        {u"{\\rtf1{\\footer <KV:H>:</KV>}} a", u"{\\rtf1{\\footer <KV:H>:</KV>}@} a"},
        {u"{\\rtf1 <KV:TAG>INCLUDE=x.txt:</KV>}", u"{\\rtf1 @<KV:TAG>INCLUDE=x.txt:</KV>}"},
    };
    for (const auto& row : rows) {
        Checked checked;
        checked.add(u"x.txt", "<KV:H>:</KV>");
        std::vector<Diagnostic> found = TemplateCheck(checked.services, nullptr).run(u"t", row.text).diagnostics;
        std::erase_if(found, [](const Diagnostic& each) { return each.code == DiagnosticCode::damagedGroups; });
        std::u16string text = annotated(TemplateFile(u"t", row.text, {}), found);
        constexpr std::u16string_view begin = u"{\\*\\atnid velmor}";
        for (std::size_t at; (at = text.find(begin)) != text.npos;) {
            const std::size_t last = text.find(u'}', text.find(u"\\annotation", at));
            text.replace(at, last + 1 - at, u"@");
        }
        EXPECT_EQ(toUtf8(text), toUtf8(row.expected));
    }
}

TEST(TemplateCheck, KeepsTheFirstThousandAndCountsTheOthers) {
    std::u16string text;
    for (int i = 0; i < 1200; ++i) text += u"<KV:";
    Checked checked;
    const CheckResult result = TemplateCheck(checked.services, nullptr).run(u"t", text);
    EXPECT_EQ(result.diagnostics.size(), 1000u);
    EXPECT_EQ(result.more, 200u);
}

}  // namespace
}  // namespace velmor
