// The sound that a live picture reacts to.
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickRender/LevelInputs.h"
#include "TarnwickRender/SoundTap.h"
#include "TarnwickRender/StillRenderer.h"
#include "player/Drawing/LivePicture.h"
#include "tests/player/DeviceTest.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr PixelSize size{32, 18};

class LiveLevelsTest : public DeviceTest {
  protected:
    void SetUp() override {
        DeviceTest::SetUp();
        if (!device)
            return;
        shown = program("float2 sound(float t, constant Params& p) {\n"
                        "    return float2(0.5 * sin(6.2831853 * 440.0 * t));\n}\n"
                        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p,\n"
                        "             Inputs in) {\n"
                        "    return float4(in.audio.xyz * in.band(uv.x), 1.0);\n}\n");
        levels = std::make_shared<LiveLevels>();
        levels->show(std::make_shared<const SoundLevels>(
            SoundLevels{.bands = {0.25f, 0.5f, 0.75f, 1},
                        .spectrum = std::vector<float>(ShaderAssembler::spectrumBins, 0.5f)}));
    }

    // The first picture of a pause at `time`.
    std::optional<Picture> live(double time, bool hearsOwnSound) {
        std::promise<void> drawn;
        bool isDrawn = false;
        LivePicture live([&](const LiveNews& news) {
            if (news.revision == 1 && news.time == time && !std::exchange(isDrawn, true))
                drawn.set_value();
        });
        live.show(std::make_shared<const LiveRecord>(
            LiveRecord{.device = device,
                       .program = shown,
                       .revision = 1,
                       .transport = Transport{}.sought(time, 0),
                       .settings = std::make_shared<const Settings>(),
                       .size = size,
                       .divisor = 1,
                       .levels = levels,
                       .hearsOwnSound = hearsOwnSound}));
        if (drawn.get_future().wait_for(std::chrono::seconds(30)) != std::future_status::ready)
            return std::nullopt;
        return live.snapshot().get();
    }
    std::optional<Picture> still(double time, const ShaderInputs& inputs) {
        return StillRenderer::render(shown, *device, size.width, size.height,
                                     static_cast<float>(time), 0, {}, nullptr, inputs);
    }

    std::shared_ptr<const ShaderProgram> shown;
    std::shared_ptr<LiveLevels> levels;
};

TEST_F(LiveLevelsTest, showsTheNewestLevelsOfAnotherSound) {
    const auto inputs = LevelInputs::make(*device);
    const auto newest = levels->newest();
    const auto heard = live(3, false),
               wanted = still(3, inputs->inputs(newest->bands, newest->spectrum));
    ASSERT_TRUE(heard && wanted);
    EXPECT_EQ(heard->bytes, wanted->bytes);
}

// As tarnwick still --hear.
TEST_F(LiveLevelsTest, pausesWithTheLevelsOfTheStill) {
    const auto tap = SoundTap::make(shown, *device);
    const auto paused = live(3, true), wanted = still(3, tap->playedInputs(3, {}));
    ASSERT_TRUE(paused && wanted);
    EXPECT_EQ(paused->bytes, wanted->bytes);
}

} // namespace
} // namespace tarnwick::player
