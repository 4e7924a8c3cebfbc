// Compares calls of a string builder with the same calls of a flat buffer.

#include <cstdio>
#include <cstdlib>

#include "text/BuilderDuel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string fault = velmor::test::BuilderDuel(data, size).run();
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}
