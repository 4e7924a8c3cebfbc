// tests/golden/<case>/: "template", "properties" (in the text form; optional), "expected", and the files
// that the template includes, as if in the component's folder.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "common/TextFile.h"
#include "core/TestTags.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> caseNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(fs::path(VELMOR_TEST_DATA) / "golden")) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, GivesTheExpectedText) {
    const fs::path folder = fs::path(VELMOR_TEST_DATA) / "golden" / GetParam();
    test::TagTest on;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        const std::u16string path =
            on.services.folders.componentFolder + u"\\" + std::u16string(name.begin(), name.end());
        on.services.files.set(path, bytesOf(entry.path()));
    }
    on.properties->Build(decodeTextFile(bytesOf(folder / "properties")));
    const std::u16string expected = decodeTextFile(bytesOf(folder / "expected"));
    const auto tag = on.make(u"");
    tag->Value(decodeTextFile(bytesOf(folder / "template")));
    EXPECT_EQ(tag->Result(), expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, testing::ValuesIn(caseNames()), [](const auto& param) { return param.param; });

}  // namespace
}  // namespace velmor
