#include "player/Sound/SoundMix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

class SoundMixTest : public testing::Test {
  protected:
    // Frames of 0.5 in the own sound and 0.25 in the file.
    void write(std::size_t count) {
        ring.append(std::vector<SoundFrame>(count, {{0.5f, -0.5f}, {0.25f, 0.25f}}));
    }
    // The last sample of both sides; no sample may be far from the one before it.
    std::array<float, 2> fill(int blocks) {
        std::vector<float> stereo(1024);
        for (int block = 0; block < blocks; ++block) {
            mix.fill(stereo, 0);
            for (std::size_t at = 0; at < stereo.size(); ++at) {
                EXPECT_LT(std::abs(stereo[at] - last[at % 2]), 0.01) << block << " " << at;
                last[at % 2] = stereo[at];
            }
        }
        return last;
    }

    SampleRing ring{1 << 16};
    SoundClock clock;
    SoundMix mix{ring, clock};
    std::array<float, 2> last{};
};

TEST_F(SoundMixTest, rampsToEachVolume) {
    write(20000);
    EXPECT_EQ(fill(4), (std::array{0.75f, -0.25f}));
    mix.setVolume({.all = 0.5f});
    EXPECT_EQ(fill(4), (std::array{0.375f, -0.125f}));
    mix.setVolume({.all = 0.5f, .hasFile = false});
    EXPECT_EQ(fill(4), (std::array{0.25f, -0.25f}));
    mix.setVolume({.all = 0.5f, .isMuted = true});
    EXPECT_EQ(fill(4), (std::array{0.0f, 0.0f}));
}

TEST_F(SoundMixTest, fadesWhereFramesAreMissing) {
    write(512 * 4);
    fill(4);
    EXPECT_EQ(mix.missing(), 0);
    EXPECT_NEAR(fill(4)[0], 0, 1e-4);
    EXPECT_EQ(mix.missing(), 512 * 4);
}

TEST_F(SoundMixTest, countsWhatIsLateHereAndWhatIsLateInTheSystem) {
    std::vector<float> stereo(1024);
    mix.fill(stereo, 10); // before the first frame
    write(512);
    for (int call = 1; call < 100; ++call) {
        write(512);
        mix.fill(stereo, 12 + call * 0.01);
    }
    mix.fill(stereo, 13.03);
    EXPECT_EQ(mix.figures().taken, 101 * 512);
    EXPECT_EQ(mix.figures().missing, 512);
    EXPECT_NEAR(mix.figures().longestWait, 0.04, 1e-9);
    mix.restart();
    mix.fill(stereo, 99);
    EXPECT_EQ(mix.figures(), (SoundFigures{.taken = 512}));
}

} // namespace
} // namespace tarnwick::player
