#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "player/Drawing/LivePicture.h"
#include "tests/player/DeviceTest.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace tarnwick::player {
namespace {

constexpr PixelSize size{16, 9};
constexpr const char* head =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n    return ";

class LiveChannelsTest : public DeviceTest {
  protected:
    std::shared_ptr<const ShaderProgram> shading(const std::string& expression) const {
        return program(head + expression + ";\n}\n");
    }
    LiveEpisode episode(const std::string& expression, const LiveChannelSet& channels = {}) const {
        return {shading(expression), std::make_shared<const Settings>(), channels};
    }
    void show(const std::string& expression, const LiveChannels& channels, bool isPlaying = false) {
        Transport transport;
        transport.isPlaying = isPlaying;
        live.show(std::make_shared<const LiveRecord>(
            LiveRecord{.device = device,
                       .program = shading(expression),
                       .revision = ++revision,
                       .transport = transport,
                       .settings = std::make_shared<const Settings>(),
                       .channels = std::make_shared<const LiveChannels>(channels),
                       .size = size,
                       .divisor = 1}));
    }
    // The first pixel as 0xRRGGBB.
    int color() {
        const auto picture = live.snapshot().get();
        return picture
                   ? picture->bytes.at(2) << 16 | picture->bytes.at(1) << 8 | picture->bytes.at(0)
                   : -1;
    }
    bool becomes(int wanted) {
        for (int tries = 0; tries < 500 && color() != wanted; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return color() == wanted;
    }

    std::uint64_t revision = 0;
    LivePicture live{[](const LiveNews&) {}};
};

// Paused: the picture is drawn again once the file is read, and once it was saved again.
TEST_F(LiveChannelsTest, drawAPictureFileUprightAndItsSuccessor) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "a.png";
    Picture picture = filledPicture(16, 18, {255, 0, 0}); // blue above, red below
    paste(picture, filledPicture(16, 9, {0, 0, 255}), 0, 9);
    writePNG(picture, file);
    LiveChannels channels;
    channels.channels[2].source = std::make_shared<FrameSource>(SourceKind::file, file, nullptr);
    show("in.channel(2, uv)", channels);
    EXPECT_TRUE(becomes(0x0000FF));
    writePNG(filledPicture(8, 8, {0, 255, 0}), file);
    EXPECT_TRUE(becomes(0x00FF00));
}

// The chain 1, 2, 3; and the ring in which an episode reads one that reads it.
TEST_F(LiveChannelsTest, drawOtherEpisodesInChainsAndRings) {
    LiveChannels channels{.document = 1};
    channels.channels[0].document = 2;
    channels.episodes[2] = episode("in.channel(1, uv) + float4(0.0, 1.0, 0.0, 0.0)");
    channels.episodes[2].channels[1].document = 3;
    channels.episodes[3] = episode("float4(0.0, 0.0, 1.0, 1.0)");
    show("in.channel(0, uv) + float4(1.0, 0.0, 0.0, 0.0)", channels);
    EXPECT_TRUE(becomes(0xFFFFFF));

    channels.episodes[3] = episode("float4(in.channel(0, uv).r - 8.0 / 255.0, 0.0, 1.0, 1.0)");
    channels.episodes[3].channels[0].document = 1;
    show("in.channel(0, uv)", channels, true);
    EXPECT_TRUE(becomes(0x00FFFF)) << "each frame has less red than the frame before";
}

} // namespace
} // namespace tarnwick::player
