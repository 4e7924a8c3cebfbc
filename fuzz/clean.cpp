// Cleans any RTF: cleaning ends, the text grows within bounds, no placeholder remains, and balanced
// braces stay balanced.

#include <cstdlib>

#include "rtf/CleaningOfPieces.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!velmor::test::faultOfCleaning(data, size).empty()) std::abort();
    return 0;
}
