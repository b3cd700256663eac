#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/Native.h"
#include "tests/TarnwickMSL/RandomPrograms/RandomProgram.h"
#include "tests/TarnwickMSL/RandomPrograms/Trial.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

using namespace tarnwick::trials;

namespace {

// Those that Random.cmake compiles.
constexpr std::uint64_t firstSeed = FIRST_SEED, programs = PROGRAMS;

} // namespace

TEST(RandomPrograms, areTheSameForTheSameSeed) {
    EXPECT_EQ(randomProgram(7), randomProgram(7));
    EXPECT_NE(randomProgram(7), randomProgram(8));
}

// A program whose inputs all end alike would test little.
TEST(RandomPrograms, giveManyValues) {
    std::uint64_t rich = 0;
    for (std::uint64_t program = 0; program < programs; program++) {
        std::array<std::uint32_t, trialInputs> results{};
        nativeTrial(program, 8, results.data());
        const std::set<std::uint32_t> values(results.begin(), results.end());
        rich += values.size() > trialInputs / 2 ? 1 : 0;
    }
    EXPECT_GT(rich, programs / 2);
}

// By default every second program runs in a kernel, the others in a fragment function.
static void expectAgreement(std::uint64_t first, Stages stages,
                            const tarnwick::msl::Target& target = {}, std::uint64_t step = 2) {
    const auto trial = Trial::make(target);
    if (!trial)
        GTEST_SKIP() << "No Vulkan device is here.";
    for (std::uint64_t program = first; program < programs; program += step) {
        const std::uint64_t seed = firstSeed + program;
        EXPECT_EQ(trial->difference(randomProgram(seed), program, nativeTrial, stages), "")
            << "seed " << seed;
    }
}

TEST(RandomPrograms, agreeWithNativeCodeInKernels) {
    expectAgreement(0, {.fragment = false});
}

TEST(RandomPrograms, agreeWithNativeCodeInFragmentFunctions) {
    expectAgreement(1, {.kernel = false});
}

TEST(RandomPrograms, agreeWithNativeCodeWithoutSmallAndLongTypes) {
    expectAgreement(0, {.fragment = false},
                    {.hasFloat16 = false, .hasInt8 = false, .hasInt16 = false, .hasInt64 = false},
                    9);
}

// Neighbours that leave the loop at different rounds and in two ways; phis of vectors fail here.
TEST(Programs, keepVectorsThatLoopsTurn) {
    const auto trial = Trial::make();
    if (!trial)
        GTEST_SKIP() << "No Vulkan device is here.";
    const Outcome outcome = trial->run(R"(uint trial(uint input) {
    uint4 v = uint4(input, input + 1u, input + 2u, input + 3u);
    for (uint i = 0u; i < input % 6u; i++) {
        if (input >= 40u) return 5u;
        v = v.yzwx;
    }
    return v.x;
}
)");
    ASSERT_EQ(outcome.problem, "");
    for (std::uint32_t i = 0; i < trialInputs; i++) {
        const std::uint32_t input = trialInput(i), rounds = input % 6;
        const std::uint32_t expected = input >= 40 && rounds > 0 ? 5 : input + rounds % 4;
        EXPECT_EQ(outcome.kernel[i], expected) << "kernel, input " << i;
        EXPECT_EQ(outcome.fragment[i], expected) << "fragment, input " << i;
    }
}

// Without the shape for rows of loops the CPU driver is not through with this in an hour.
TEST(Programs, comeThroughManyLoopsInARow) {
    const auto trial = Trial::make();
    if (!trial)
        GTEST_SKIP() << "No Vulkan device is here.";
    constexpr std::uint32_t loops = 20;
    std::string body = "uint trial(uint a) {\n";
    for (std::uint32_t k = 0; k < loops; k++)
        body += "    for (uint i = a % 6u; i < 7u; i++) {\n        a = a * " +
                std::to_string(2 * k + 3) + "u + i;\n        if ((a & 31u) == 9u) break;\n    }\n";
    const Outcome outcome = trial->run(body + "    return a;\n}\n");
    ASSERT_EQ(outcome.problem, "");
    for (std::uint32_t input = 0; input < trialInputs; input++) {
        std::uint32_t a = trialInput(input);
        for (std::uint32_t k = 0; k < loops; k++)
            for (std::uint32_t i = a % 6; i < 7; i++)
                if (a = a * (2 * k + 3) + i; (a & 31) == 9)
                    break;
        EXPECT_EQ(outcome.kernel[input], a) << "kernel, input " << input;
        EXPECT_EQ(outcome.fragment[input], a) << "fragment, input " << input;
    }
}
