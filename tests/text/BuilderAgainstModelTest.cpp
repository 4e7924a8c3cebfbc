#include <gtest/gtest.h>

#include <random>

#include "BuilderDuel.h"

namespace velmor::test {
namespace {

// Every member, in random order, on random texts, positions and extremes.
TEST(BuilderAgainstModel, RandomCallsGiveWhatTheFlatBufferGives) {
    const unsigned first = std::random_device()();
    for (unsigned seed = first; seed != first + 1000; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(random() % 1500);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
        const std::string fault = BuilderDuel(bytes.data(), bytes.size()).run();
        ASSERT_EQ(fault, "") << "seed " << seed;
    }
}

}  // namespace
}  // namespace velmor::test
