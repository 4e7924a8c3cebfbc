// Reads any text as a text form: the reader never fails, and what it reads is the same after writing and
// reading again.

#include <cstdio>
#include <cstdlib>

#include "properties/TextFormOfPieces.h"

namespace {

void read(const std::uint8_t* data, std::size_t size) {
    const std::string fault = velmor::test::faultOfTextForm(data, size);
    if (fault.empty()) return;
    std::fprintf(stderr, "%s\n", fault.c_str());
    std::abort();
}

}  // namespace

// The whole input, and its short parts: a long text always has a name that does not come back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size >= 2) read(data, size);
    for (std::size_t begin = 0, part; begin + 2 < size; begin += part) {
        part = std::min<std::size_t>(size - begin, data[begin] % 32 + 3u);
        if (part >= 2) read(data + begin, part);
    }
    return 0;
}
