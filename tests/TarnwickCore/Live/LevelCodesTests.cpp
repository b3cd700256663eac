#include "TarnwickCore/Live/LevelCodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace tarnwick {
namespace {

TEST(LevelCodes, areTheNearestAndReadBackEqual) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> share;
    std::array<float, 4> bands{};
    std::vector<float> spectrum(LevelCodes::bins);
    std::ranges::generate(bands, [&] { return share(random); });
    std::ranges::generate(spectrum, [&] { return share(random); });
    const LevelCodes codes = LevelCodes::of(bands, spectrum);
    for (std::size_t at = 0; at < bands.size(); ++at)
        EXPECT_NEAR(codes.bandValues()[at], bands[at], 0.501 / 65535);
    for (std::size_t at = 0; at < spectrum.size(); ++at)
        EXPECT_NEAR(codes.spectrumValues()[at], spectrum[at], 0.501 / 255);
    EXPECT_EQ(LevelCodes::of(codes.bandValues(), codes.spectrumValues()), codes);
    EXPECT_EQ(LevelCodes::decode(codes.encode()), codes);
}

TEST(LevelCodes, takeAnyNumbersAndNoOtherText) {
    const LevelCodes codes = LevelCodes::of({-1, 2, NAN, INFINITY}, std::vector{3.0f});
    EXPECT_EQ(codes.bands, (std::array<std::uint16_t, 4>{0, 65535, 0, 65535}));
    EXPECT_EQ(codes.spectrum[0], 255);
    EXPECT_EQ(codes.spectrum[1], 0);
    std::string text = codes.encode();
    EXPECT_FALSE(LevelCodes::decode(text.substr(4)));
    EXPECT_FALSE(LevelCodes::decode(text + "AAAA"));
    text.back() = '=';
    EXPECT_FALSE(LevelCodes::decode(text));
    text.back() = '-';
    EXPECT_FALSE(LevelCodes::decode(text));
}

} // namespace
} // namespace tarnwick
