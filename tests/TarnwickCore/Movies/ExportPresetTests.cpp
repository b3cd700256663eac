#include "TarnwickCore/Movies/ExportPlan.h"
#include "TarnwickCore/Movies/ExportPreset.h"
#include "TarnwickCore/Movies/WatermarkPlacement.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace tarnwick;

TEST(VideoCodec, readsItsNames) {
    for (const VideoCodecRow& row : videoCodecRows)
        EXPECT_EQ(videoCodecNamed(rawValue(row.codec)), row.codec);
    EXPECT_EQ(videoCodecNamed("hevcAlpha"), VideoCodec::hevcAlpha);
    for (const auto* unknown : {"", "H264", "hevcalpha"})
        EXPECT_FALSE(videoCodecNamed(unknown)) << unknown;
}

TEST(ExportPreset, isFoundByItsExactId) {
    EXPECT_EQ(ExportPreset::named("5k"), ExportPreset::fiveK);
    EXPECT_EQ(ExportPreset::named("hevcalpha"), ExportPreset::hevcAlpha);
    for (const auto* unknown : {"5K", "", "hevcAlpha"})
        EXPECT_FALSE(ExportPreset::named(unknown)) << unknown;
}

TEST(ExportPreset, fitsItsOwnName) {
    for (const auto& presets : {ExportPreset::all(), ExportPreset::pro()})
        for (const ExportPreset& preset : presets) {
            EXPECT_EQ(ExportPreset::named(preset.id), preset); // so ids are unique
            const std::string size =
                std::to_string(preset.width) + "×" + std::to_string(preset.height);
            const std::string rate = "· " + std::to_string(preset.fps) + " fps";
            EXPECT_TRUE(preset.name.ends_with(rate)) << preset.name;
            EXPECT_NE(preset.name.find(size), std::string_view::npos) << preset.name;
            EXPECT_EQ(preset.bitrate == 0, videoCodecRow(preset.codec).isIntraOnly) << preset.name;
        }
}

TEST(ExportPlan, roundsToFramesAndHasOneAtLeast) {
    auto frames = [](double duration) {
        return ExportPlan(ExportPreset::site, 0, duration).frameCount();
    };
    EXPECT_EQ(frames(10), 300);
    EXPECT_EQ(frames(10.01), 300);
    EXPECT_EQ(frames(10.02), 301);
    EXPECT_EQ(frames(0.15), 5); // a half is rounded up
    EXPECT_EQ(frames(0), 1);
    EXPECT_EQ(ExportPlan(ExportPreset::web, -3, -1), ExportPlan(ExportPreset::web, 0, 0));
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ExportPlan(ExportPreset::web, none, none), ExportPlan(ExportPreset::web, 0, 0));
}

TEST(ExportPlan, timesFramesWithoutAccumulatingErrors) {
    const ExportPlan plan(ExportPreset::web, 2.5, 1e6);
    EXPECT_EQ(plan.time(0), 2.5f);
    EXPECT_EQ(plan.time(60), 3.5f);
    EXPECT_EQ(plan.time(60 * 4096 + 1), static_cast<float>(4098.5 + 1 / 60.0));
}

TEST(WatermarkPlacement, isAtTheLowerRightOrTheUpperLeft) {
    const auto wide = WatermarkPlacement::rect(3840, 2160);
    EXPECT_NEAR(wide.x, 3551.352, 1e-3);
    EXPECT_NEAR(wide.y, 46.008, 1e-3);
    EXPECT_NEAR(wide.side, 237.6, 1e-3);
    const auto tall = WatermarkPlacement::rect(1080, 1920);
    EXPECT_NEAR(tall.x, 32.724, 1e-3);
    EXPECT_NEAR(tall.y, 1648.596, 1e-3);
    EXPECT_GT(WatermarkPlacement::rect(1080, 1080).x, 540); // as in landscape
}
