#include "rtf/NestedTables.h"

#include <gtest/gtest.h>

#include <random>

#include "LiteralNestedTables.h"
#include "NestedTableText.h"

namespace velmor {
namespace {

std::u16string convertMarked(std::u16string text, bool tolerant = false) {
    CleanOptions options;
    options.tolerant = tolerant;
    Module1::ConvertNestedTables(text, options);
    return text;
}

[[maybe_unused]] std::u16string converted(const std::u16string& text, bool tolerant = false) {
    return test::withoutMarkers(convertMarked(test::withMarkers(text), tolerant));
}

struct Case {
    std::u16string text;
    std::u16string expected;
};

TEST(NestedTables, OutcomesOfRandomTablesEqualTheRules) {
    const std::uint32_t seed = std::random_device()();
    std::mt19937 random(seed);
    for (int i = 0; i < 6000; ++i) {
        std::uint8_t bytes[48];
        const std::size_t size = random() % std::size(bytes);
        for (std::size_t k = 0; k < size; ++k) bytes[k] = static_cast<std::uint8_t>(random());
        const std::u16string text = test::nestedTableText(bytes, size);
        ASSERT_EQ(test::withoutMarkers(convertMarked(text)),
                  test::withoutMarkers(test::LiteralNestedTables::convert(text)))
            << "seed " << seed << " round " << i << "\n"
            << ::testing::PrintToString(test::withoutMarkers(text));
    }
}

}  // namespace
}  // namespace velmor
