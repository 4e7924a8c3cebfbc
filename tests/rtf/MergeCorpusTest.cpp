#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "FormattingReader.h"
#include "Merged.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;
using test::FormattingReader;
using test::narrow;

struct Document {
    std::string name;
    std::u16string text;
    bool definesNormal;
    std::vector<FormattingReader::Unit> units;
};

bool isBalanced(std::u16string_view text) {
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\') {
            ++i;
        } else if (text[i] == u'{') {
            ++depth;
        } else if (text[i] == u'}' && --depth < 0) {
            return false;
        }
    }
    return depth == 0;
}

// Whole documents, cut behind their closing brace, that have no further documents in them.
std::vector<Document> documents() {
    std::vector<Document> result;
    std::error_code none;
    for (fs::recursive_directory_iterator it(VELMOR_CORPUS, none), end; it != end; it.increment(none)) {
        if (it->path().extension() != ".rtf" || it->file_size() > 200000) continue;
        std::ifstream file(it->path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        std::u16string text = fromAnsi(bytes);
        text.resize(text.rfind(u'}') + 1);
        if (!isBalanced(text) || text.find(u"{\\rtf", 1) != text.npos || text.find(u"\\bin") != text.npos) continue;
        const bool normal = FormattingReader::definesNormal(text);
        std::vector<FormattingReader::Unit> units = FormattingReader::read(text, 0, normal);
        result.push_back({it->path().filename().string(), std::move(text), normal, std::move(units)});
    }
    return result;
}

// Empty when the part reads as the document does alone.
std::string difference(const Document& document, const std::u16string& text, int part) {
    const auto units = FormattingReader::read(text, part, document.definesNormal);
    if (units.size() != document.units.size()) {
        return document.name + ": " + std::to_string(units.size()) + " units, not " +
               std::to_string(document.units.size());
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
        const std::u16string& look = document.units[i].look;
        // What names a font that its table lacks names any.
        const bool isLike = units[i].look == look || look.find(u"f=? ") != look.npos || look.find(u"af?") != look.npos;
        if (units[i].unit == document.units[i].unit && isLike) continue;
        return document.name + " at " + std::to_string(i) + ":\n" + narrow(document.units[i].look) + "\nnow\n" +
               narrow(units[i].look);
    }
    return {};
}

std::string read(const std::u16string& text, int part) {
    std::string result;
    for (const auto& unit : FormattingReader::read(text, part, false)) result += static_cast<char>(unit.unit);
    return result;
}

TEST(MergeCorpus, EachPartKeepsItsFontsColoursListsAndStyles) {
    const std::vector<Document> all = documents();
    if (all.empty()) GTEST_SKIP() << "no documents in " << VELMOR_CORPUS;
    EXPECT_GT(all.size(), 30u);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Document& host = all[i];
        const Document& lifted = all[(i * 7 + 3) % all.size()];
        std::u16string source = host.text;
        source.insert(source.size() - 1, lifted.text + host.text);
        for (const int part : {0, 1, 2}) {
            EXPECT_EQ(read(test::merged(source), part), read(source, part)) << host.name << ' ' << lifted.name;
        }
        const std::u16string text = test::merged(source, true);
        EXPECT_TRUE(isBalanced(text)) << host.name;
        EXPECT_EQ(difference(host, text, 0), "") << "host of " << lifted.name;
        EXPECT_EQ(difference(lifted, text, 1), "") << "in " << host.name;
        EXPECT_EQ(difference(host, text, 2), "") << "in itself";
    }
}

}  // namespace
}  // namespace velmor
