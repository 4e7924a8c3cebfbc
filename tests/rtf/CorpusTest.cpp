#include <gtest/gtest.h>

#include <algorithm>

#include "Corpus.h"
#include "TableDuel.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

// The text that a reader of the document shows, without white space, and the depth of its groups at the
// end. Words with their numbers, and our own markers, are not text.
std::pair<std::u16string, int> readable(const std::u16string& document) {
    std::u16string text;
    int depth = 0;
    for (std::size_t i = 0; i < document.size();) {
        if (standsAt(document, i, u"{\\*\\korvane")) {
            i = document.find(u"}}", i) + 2;
        } else if (document[i] == u'\\' && i + 1 < document.size() && isLetter(document[i + 1])) {
            for (++i; i < document.size() && isLetter(document[i]);) ++i;
            while (i < document.size() && (document[i] == u'-' || (document[i] >= u'0' && document[i] <= u'9'))) ++i;
        } else if (document[i] == u'\\') {
            text += document.substr(i, 2);
            i += 2;
        } else {
            depth += document[i] == u'{' ? 1 : document[i] == u'}' ? -1 : 0;
            if (!isWhiteSpace(document[i]) && document[i] != u'{' && document[i] != u'}') text += document[i];
            ++i;
        }
    }
    return {text, depth};
}

// The number of marker pairs; -1 unless they are properly nested and have different identifiers.
int pairsOf(const std::u16string& text) {
    std::vector<std::u16string> open, seen;
    for (std::size_t at = 0; (at = text.find(u"{\\*\\korvane\\", at)) != std::u16string::npos; ++at) {
        if (standsAt(text, at, startTableMarker)) {
            open.push_back(text.substr(at + startTableMarker.size(), 38));
            if (std::find(seen.begin(), seen.end(), open.back()) != seen.end()) return -1;
            seen.push_back(open.back());
        } else {
            if (open.empty() || text.substr(at + endTableMarker.size(), 38) != open.back()) return -1;
            open.pop_back();
        }
    }
    return open.empty() ? static_cast<int>(seen.size()) : -1;
}

TEST(Corpus, MarkingLosesNoTextAndPairsUp) {
    int tables = 0;
    for (const auto& [name, document] : test::corpus()) {
        SCOPED_TRACE(name);
        std::u16string value = document;
        test::CountedGuids guids;
        const bool changed = addTableMarkers(value, guids);
        const int pairs = pairsOf(value);
        EXPECT_EQ(pairs > 0, changed);
        EXPECT_GE(pairs, 0);
        EXPECT_EQ(readable(value), readable(document));
        const std::u16string once = value;
        EXPECT_FALSE(addTableMarkers(value, guids) && changed);
        EXPECT_EQ(value, once);
        tables += pairs;
    }
    EXPECT_GT(tables, 0);
}

TEST(Corpus, MarkingEqualsTheSteps) {
    for (const auto& [name, document] : test::corpus()) {
        if (document.size() > 400000) continue;
        EXPECT_TRUE(test::duelAddMarkers(document).same()) << name;
    }
}

}  // namespace
}  // namespace velmor
