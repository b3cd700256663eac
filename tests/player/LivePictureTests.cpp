#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/StillRenderer.h"
#include "player/Drawing/LivePicture.h"
#include "tests/player/DeviceTest.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tarnwick::player {
namespace {

constexpr PixelSize size{64, 36};

class LivePictureTest : public DeviceTest {
  protected:
    std::shared_ptr<const ShaderProgram> shading(const std::string& body) const {
        return program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n" +
                       body + "\n}\n");
    }

    void show(const std::shared_ptr<const ShaderProgram>& shown, std::uint64_t revision,
              const Transport& transport, std::optional<int> divisor = 1,
              double longestFrame = FrameTimes::defaultLongestFrame) {
        live.show(std::make_shared<const LiveRecord>(
            LiveRecord{.device = device,
                       .program = shown,
                       .revision = revision,
                       .transport = transport,
                       .settings = std::make_shared<const Settings>(),
                       .size = size,
                       .divisor = divisor,
                       .longestFrame = longestFrame}));
    }

    // The first news for which `holds`; fails after half a minute.
    template <typename Condition> LiveNews waitFor(const Condition& holds) {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(arrived.wait_for(lock, std::chrono::seconds(30), [&] { return holds(news); }));
        return news;
    }
    LiveNews waitForFrame(std::uint64_t revision, double time) {
        return waitFor([=](const LiveNews& said) {
            return said.revision == revision && said.time == time && !said.warming;
        });
    }

    std::mutex mutex; // of the next two
    std::condition_variable arrived;
    LiveNews news;
    LivePicture live{[this](const LiveNews& said) {
        const std::lock_guard lock(mutex);
        news = said;
        arrived.notify_all();
    }};
};

TEST_F(LivePictureTest, drawsTheFrameOfTheStill) {
    const auto shown = shading("return float4(uv, fract(u.time) * float(u.frame == 150), 1.0);");
    show(shown, 1, Transport{}.sought(2.5, 0));
    waitForFrame(1, 2.5);
    const auto picture = live.snapshot().get();
    const auto still =
        StillRenderer::render(shown, *device, size.width, size.height, 2.5f, 150, {});
    ASSERT_TRUE(picture && still);
    EXPECT_EQ(picture->bytes, still->bytes);
}

// After any seek, also backwards, the particles and their trails are those of a still.
TEST_F(LivePictureTest, drawsParticlesOfEachTimeItIsSetTo) {
    const auto shown = program(R"(// @particles 50
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return {float2(0.1, 0.02 * float(id))}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at.x = fract(q.at.x + 0.001 * float(id));
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.05); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(1.0); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
)");
    std::uint64_t revision = 0;
    for (const double time : {0.5, 6.0, 1.0, 1.25}) {
        show(shown, ++revision, Transport{}.sought(time, 0));
        waitFor([=](const LiveNews& said) { return said.time == time && !said.warming; });
        // A simulation that is a little behind catches up frame by frame.
        std::optional<Picture> picture;
        const auto still =
            StillRenderer::render(shown, *device, size.width, size.height, static_cast<float>(time),
                                  static_cast<std::uint32_t>(time * 60), {});
        for (int tries = 0; tries < 100; ++tries) {
            picture = live.snapshot().get();
            if (picture && still && picture->bytes == still->bytes)
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        ASSERT_TRUE(picture && still);
        EXPECT_EQ(picture->bytes, still->bytes) << time;
    }
}

// Without a loop of its own, an episode that reads its previous frame counts its frames.
TEST_F(LivePictureTest, drawsAllFramesBeforeTheOneItIsSetTo) {
    const auto shown =
        program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
                "return float4(in.previous(uv).r + 1.0 / 255.0, 0.0, 0.0, 1.0);\n}\n");
    ASSERT_TRUE(shown->readsPrevious());
    for (const std::int64_t frame : {200, 20, 90}) {
        const double time = static_cast<double>(frame) / Transport::framesPerSecond;
        show(shown, 1, Transport{}.sought(time, 0));
        waitForFrame(1, time);
        const auto picture = live.snapshot().get();
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->bytes.at(2), frame + 1);
    }
}

// An edit goes on with the previous frame of the old program while the clock runs, and is drawn
// from the first frame on while it does not.
TEST_F(LivePictureTest, goesOnWithThePreviousFrameAfterAnEdit) {
    const auto counting = [this](const std::string& blue) {
        return program(
            "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
            "return float4(in.previous(uv).r + 1.0 / 255.0, 0.0, " +
            blue + ", 1.0);\n}\n");
    };
    const double begin = currentMediaTime();
    const Transport playing = Transport{}.sought(2, begin).played(begin);
    show(counting("0.0"), 1, playing);
    waitFor([](const LiveNews& said) { return said.revision == 1 && said.time > 2.1; });
    const int before = live.snapshot().get()->bytes.at(2);
    EXPECT_GT(before, 120);
    show(counting("1.0"), 2, playing);
    const LiveNews said = waitFor([](const LiveNews& news) { return news.revision == 2; });
    EXPECT_FALSE(said.warming);
    EXPECT_GE(live.snapshot().get()->bytes.at(2), before);
    const Transport paused = Transport{}.sought(1, begin);
    show(counting("0.0"), 3, paused);
    waitForFrame(3, 1);
    show(counting("1.0"), 4, paused);
    waitForFrame(4, 1);
    for (int tries = 0; tries < 100 && live.snapshot().get()->bytes.at(2) != 61; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(live.snapshot().get()->bytes.at(2), 61);
    EXPECT_EQ(live.snapshot().get()->bytes.at(0), 255);
}

TEST_F(LivePictureTest, keepsTheOldPictureUntilTheNextIsDrawn) {
    show(shading("return float4(0, 1, 0, 1);"), 1, Transport{}.sought(1, 0));
    waitForFrame(1, 1);
    show(nullptr, 2, Transport{}.sought(1, 0)); // a text that does not compile
    const auto picture = live.snapshot().get();
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->bytes.at(1), 255);
    show(shading("return float4(1, 0, 0, 1);"), 3, Transport{}.sought(1, 0));
    waitForFrame(3, 1);
    EXPECT_EQ(live.snapshot().get()->bytes.at(2), 255);
}

TEST_F(LivePictureTest, drawsSmallerPicturesOnRequest) {
    show(shading("return float4(u.resolution / 255.0, 0, 1);"), 1, Transport{}, 4);
    const LiveNews said = waitForFrame(1, 0);
    EXPECT_EQ(said.picture, (PixelSize{16, 9}));
    const auto picture = live.snapshot().get();
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 16u);
    EXPECT_EQ(picture->bytes.at(2), 16);
}

// The loop runs out of its budget in each frame; the thread answers and the next program is drawn.
TEST_F(LivePictureTest, reportsAnEndlessLoopAndDrawsTheNextProgram) {
    show(shading("float x = uv.x; while (x < 10.0) x *= 0.999; return float4(x);"), 1,
         Transport{}.played(currentMediaTime()));
    waitFor([](const LiveNews& said) { return said.hitLoopBudget || said.isTooSlow; });
    show(shading("return float4(1, 0, 0, 1);"), 2, Transport{}.sought(1, 0));
    const LiveNews said = waitForFrame(2, 1);
    EXPECT_FALSE(said.hitLoopBudget);
    EXPECT_TRUE(said.failure.empty());
}

// A frame of several tenths of a second; once it may take longer, the same program is drawn.
TEST_F(LivePictureTest, stopsAFrameThatTakesLongerThanTheUserAllows) {
    const auto slow = shading("float x = uv.x;\n"
                              "for (int i = 0; i < 30000; ++i) x = fract(sin(x + u.time) * 9.7);\n"
                              "return float4(x);");
    const Transport paused = Transport{}.sought(1, 0);
    show(slow, 1, paused, 1, 0.05);
    EXPECT_EQ(waitFor([](const LiveNews& said) { return said.isTooSlow; }).failure,
              "The shader takes too long.");
    show(slow, 2, paused);
    EXPECT_EQ(waitForFrame(2, 1).failure, "");
}

} // namespace
} // namespace tarnwick::player
