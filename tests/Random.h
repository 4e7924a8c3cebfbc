#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "Seed.h"

// Random numbers from testSeed. A test that fails during its lifetime shows the seed.
class Random : public std::mt19937 {
public:
    explicit Random(unsigned seed = testSeed()) : std::mt19937(seed), trace_("random test", 0, seed) {}

    std::uint64_t bits() { return std::uint64_t{(*this)()} << 32 | (*this)(); }
    unsigned below(std::size_t count) { return static_cast<unsigned>((*this)() % count); }

    template <typename List>
    const auto& of(const List& list) {
        return list[below(std::size(list))];
    }
    // A sequence of up to `most` of the pieces.
    template <typename Text = std::u16string, typename Pieces>
    Text text(const Pieces& pieces, unsigned most) {
        Text made;
        for (unsigned left = below(most + 1); left > 0; --left) made += of(pieces);
        return made;
    }
    std::vector<std::uint8_t> bytes(unsigned most) {
        std::vector<std::uint8_t> made(below(most + 1));
        for (std::uint8_t& byte : made) byte = static_cast<std::uint8_t>((*this)());
        return made;
    }

private:
    testing::ScopedTrace trace_;
};
