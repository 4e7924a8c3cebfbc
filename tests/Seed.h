#pragma once

#include <cstdlib>
#include <random>
#include <string_view>

// The seed of random tests. It is the same in every run, so that a failure shows a change of the code.
// VELMOR_SEED=random, or a number, sets another.
inline unsigned testSeed() {
    const char* const wanted = std::getenv("VELMOR_SEED");
    if (wanted == nullptr) return 20040305;
    if (std::string_view(wanted) == "random") return std::random_device{}();
    return static_cast<unsigned>(std::strtoul(wanted, nullptr, 10));
}
