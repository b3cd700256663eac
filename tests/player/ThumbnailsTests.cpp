#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Thumbnails/ThumbnailStore.h"
#include "player/Thumbnails/Thumbnails.h"
#include "tests/player/DeviceTest.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @still 0.5\n// @param red 1 0 1\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, u.time, 0.0, 1.0);\n}\n";

class ThumbnailPictures : public DeviceTest {
  protected:
    // The first `count` thumbnails that arrive.
    std::vector<Thumbnail> wait(std::size_t count) {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::seconds(60), [&] { return got.size() >= count; });
        return got;
    }
    static int color(const Thumbnail& made) {
        if (made.picture.bytes.empty())
            return -1;
        return made.picture.bytes.at(2) << 16 | made.picture.bytes.at(1) << 8 |
               made.picture.bytes.at(0);
    }

    TemporaryFolder folder;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Thumbnail> got;
    Thumbnails thumbnails{folder.path() / "kept", [this](Thumbnail made) {
                              const std::lock_guard lock(mutex);
                              got.push_back(std::move(made));
                              changed.notify_one();
                          }};
};

TEST_F(ThumbnailPictures, areDrawnAtTheStillAndAfterIt) {
    Settings settings;
    settings.values["red"] = 0;
    thumbnails.ask({.id = 7,
                    .episode = std::make_shared<const Episode>(Episode::of(text)),
                    .settings = settings,
                    .size = {16, 9},
                    .frames = 2});
    const auto made = wait(2);
    ASSERT_EQ(made.size(), 2u) << (made.empty() ? "" : made[0].failure);
    EXPECT_EQ(color(made[0]), 0x008000);
    EXPECT_EQ(color(made[1]), 0x009900);
    EXPECT_EQ(made[1].id, 7u);
    const auto kept = std::filesystem::directory_iterator(folder.path() / "kept");
    EXPECT_EQ(std::distance(begin(kept), end(kept)), 2);
}

TEST_F(ThumbnailPictures, haveTheSettingsBesideAFile) {
    const auto file = folder.path() / "a.metal";
    writeWholeFile(file, text);
    writeWholeFile(folder.path() / "a.json",
                   R"({"name": "", "values": {"red": 0.2}, "keys": {"tracks": {}}})");
    thumbnails.ask({.id = 1, .file = file, .size = {16, 9}});
    const auto made = wait(1);
    ASSERT_EQ(made.size(), 1u);
    EXPECT_EQ(color(made[0]), 0x338000);
}

TEST_F(ThumbnailPictures, sayWhyTheyAreAbsent) {
    writeWholeFile(folder.path() / "b.metal", "// one\nfloat4 shade(float2 uv, constant Uniforms& "
                                              "u, constant Params& p) { return missing; }\n");
    thumbnails.ask({.id = 1, .file = folder.path() / "none.metal", .frames = 3});
    thumbnails.ask({.id = 2, .file = folder.path() / "b.metal", .frames = 3});
    const auto made = wait(2);
    ASSERT_EQ(made.size(), 2u);
    EXPECT_NE(made[0].failure.find("none.metal"), std::string::npos) << made[0].failure;
    EXPECT_TRUE(made[1].failure.starts_with("Line 2: ")) << made[1].failure;
}

} // namespace
} // namespace tarnwick::player
