// Compares the headers and footers of joined documents with those that a reader of each
// document sees.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "rtf/HeaderDuel.h"

namespace {

using namespace velmor;

void require(bool same, const char* what, const std::u16string& text) {
    if (same) return;
    std::fprintf(stderr, "%s differ: %s\n", what, toUtf8(text).c_str());
    std::abort();
}

using Sections = std::vector<test::SectionReader::Section>;

bool same(const Sections& left, const Sections& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const auto& one, const auto& other) { return one.looksLike(other); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    std::size_t at = 1;
    const auto choose = [&](unsigned count) { return at < size ? data[at++] % count : 0; };
    CleanOptions options;
    options.tolerant = (data[0] & 1) != 0;
    const test::JoinedDuel duel(choose, options.tolerant);
    require(same(duel.joined, duel.alone), "joined headers", duel.before);
    return 0;
}
