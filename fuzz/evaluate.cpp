// Compares the engine with the literal loop, on templates made of pieces that the bytes choose.

#include <cstdio>
#include <cstdlib>

#include "core/EvaluationDuel.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string fault = velmor::test::EvaluationDuel(data, size).run();
    if (!fault.empty()) {
        std::fprintf(stderr, "%s\n", fault.c_str());
        std::abort();
    }
    return 0;
}
