#include "tests/TarnwickMSL/RandomPrograms/Generator.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/Native.h"
#include "tests/TarnwickMSL/RandomPrograms/Trial.h"

#include <gtest/gtest.h>

#include <set>

using namespace tarnwick::trials;

namespace {

constexpr std::uint64_t programs = 100; // as many as Random.cmake compiles

} // namespace

TEST(RandomPrograms, areTheSameForTheSameSeed) {
    EXPECT_EQ(randomProgram(7), randomProgram(7));
    EXPECT_NE(randomProgram(7), randomProgram(8));
}

// A program whose inputs all end alike would test little.
TEST(RandomPrograms, giveManyValues) {
    std::uint64_t rich = 0;
    for (std::uint64_t seed = 1; seed <= programs; seed++) {
        std::set<std::uint32_t> values;
        for (std::uint32_t i = 0; i < trialInputs; i++)
            values.insert(nativeTrial(seed, trialInput(i)));
        rich += values.size() > trialInputs / 2 ? 1 : 0;
    }
    EXPECT_GT(rich, programs / 2);
}

TEST(RandomPrograms, agreeWithNativeCodeBitForBit) {
    const auto trial = Trial::make();
    if (!trial)
        GTEST_SKIP() << "No Vulkan device is here.";
    std::uint64_t agreeing = 0;
    for (std::uint64_t seed = 1; seed <= programs; seed++) {
        const std::string difference = trial->difference(seed, nativeTrial);
        EXPECT_EQ(difference, "") << "seed " << seed;
        agreeing += difference.empty() ? 1 : 0;
    }
    std::printf("%llu of %llu programs agree\n", static_cast<unsigned long long>(agreeing),
                static_cast<unsigned long long>(programs));
}
