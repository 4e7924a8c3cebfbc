#pragma once

#include <cstdlib>
#include <random>
#include <string_view>

// Where random tests begin. The same on every run, so that a run says something about the change and
// not about its luck; VELMOR_SEED=random, or a number, makes them look elsewhere.
inline unsigned testSeed() {
    const char* const wanted = std::getenv("VELMOR_SEED");
    if (wanted == nullptr) return 20040305;
    if (std::string_view(wanted) == "random") return std::random_device{}();
    return static_cast<unsigned>(std::strtoul(wanted, nullptr, 10));
}
