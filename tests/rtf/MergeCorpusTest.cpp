#include <gtest/gtest.h>

#include "Corpus.h"
#include "FormattingReader.h"
#include "Merged.h"

namespace velmor {
namespace {

using test::FormattingReader;
using test::narrow;
using test::RtfText;

struct Document {
    std::string name;
    std::u16string text;
    bool definesNormal;
    std::vector<FormattingReader::Unit> units;
};

// Whole documents without embedded documents, cut after their closing brace.
std::vector<Document> documents() {
    std::vector<Document> result;
    for (auto [name, text] : test::corpus()) {
        text.resize(text.rfind(u'}') + 1);
        const bool isSimple = text.find(u"{\\rtf", 1) == text.npos && text.find(u"\\bin") == text.npos;
        if (text.size() > 200000 || !isSimple || !RtfText(text).isBalanced()) continue;
        const bool normal = FormattingReader::definesNormal(text);
        result.push_back({name, text, normal, FormattingReader::read(text, 0, normal)});
    }
    return result;
}

// Empty if the part reads like the document alone.
std::string difference(const Document& document, const std::u16string& text, int part) {
    const auto units = FormattingReader::read(text, part, document.definesNormal);
    if (units.size() != document.units.size()) return document.name + ": " + std::to_string(units.size()) + " units";
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto& [unit, look] = document.units[i];
        // A reference to a font that its table lacks may become any font.
        const bool isLike = units[i].look == look || look.find(u"f=? ") != look.npos || look.find(u"af?") != look.npos;
        if (units[i].unit == unit && isLike) continue;
        return document.name + " at " + std::to_string(i) + ":\n" + narrow(look) + "\nnow\n" + narrow(units[i].look);
    }
    return {};
}

TEST(MergeCorpus, EachPartKeepsItsFontsColoursListsAndStyles) {
    const std::vector<Document> all = documents();
    EXPECT_GT(all.size(), 20u);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Document& host = all[i];
        const Document& lifted = all[(i * 7 + 3) % all.size()];
        std::u16string source = host.text;
        source.insert(source.size() - 1, u"\\uc1" + lifted.text + host.text);
        const std::u16string text = test::merged(source, true);
        EXPECT_TRUE(RtfText(text).isBalanced()) << host.name;
        EXPECT_EQ(difference(host, text, 0), "") << "host of " << lifted.name;
        EXPECT_EQ(difference(lifted, text, 1), "") << "in " << host.name;
        EXPECT_EQ(difference(host, text, 2), "") << "in itself";
    }
}

}  // namespace
}  // namespace velmor
