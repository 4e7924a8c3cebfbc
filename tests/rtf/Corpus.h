#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "text/Encoding.h"

namespace velmor::test {

struct CorpusDocument {
    std::string name;
    std::u16string text;
};

// Real documents, by name; none where they are not at hand.
inline const std::vector<CorpusDocument>& corpus() {
    static const auto documents = [] {
        std::vector<CorpusDocument> result;
        std::error_code none;
        for (std::filesystem::recursive_directory_iterator it(VELMOR_CORPUS, none), end; it != end;
             it.increment(none)) {
            if (it->path().extension() != ".rtf") continue;
            std::ifstream file(it->path(), std::ios::binary);
            result.push_back(
                {it->path().filename().string(), fromAnsi(std::string{std::istreambuf_iterator<char>(file), {}})});
        }
        std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        return result;
    }();
    return documents;
}

}  // namespace velmor::test
