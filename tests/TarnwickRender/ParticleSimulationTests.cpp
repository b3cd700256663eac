#include "TarnwickRender/Run/ParticleSimulation.h"
#include "tests/TarnwickGPU/HeapCount.h"
#include "tests/TarnwickRender/Rendering.h"

#include <cmath>
#include <limits>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

using Particles = Rendering;

constexpr auto noLimit = ParticleSimulation::noLimit;

// A swarm that leaves trails, so that a picture tells of every step before it.
const ParticleEpisode swarm{
    .count = 300,
    .fields = "float2 at; float2 speed;",
    .spawn = "q.at = fract(float2(id * 0.618, id * 0.414));\n"
             "    q.speed = float2(fract(id * 0.37) - 0.5, fract(id * 0.71) - 0.5);",
    .update = "q.speed += (float2(0.5) - q.at) * u.timeDelta * (1.0 + sin(u.time));\n"
              "    q.at += q.speed * u.timeDelta;",
    .place = "return float3(q.at, 0.06);",
    .ink = "return float4(0.2, 0.1 * length(at), 0.3 * fract(u.time), 0.0);",
    .fade = "return previous.at(uv + 0.003) * 0.9;"};

} // namespace

TEST_F(Particles, countStepsToTheNearestHalvesUpwards) {
    EXPECT_EQ(ParticleSimulation::steps(1), 60);
    EXPECT_EQ(ParticleSimulation::steps(0.00834), 1);
    EXPECT_EQ(ParticleSimulation::steps(0.0083), 0);
    EXPECT_EQ(ParticleSimulation::steps(2.5 / 60), 3);
    EXPECT_EQ(ParticleSimulation::steps(-2), 0);
    EXPECT_EQ(ParticleSimulation::steps(std::nan("")), 0);
    EXPECT_GT(ParticleSimulation::steps(std::numeric_limits<double>::infinity()), 1LL << 62);
}

TEST_F(Particles, stepTowardsTheTargetAndStartAgainWhereItLiesBehind) {
    const auto simulation = ParticleSimulation::make(program(swarm.text())->parts(), *device, 8, 8);
    ASSERT_TRUE(simulation);
    struct Row {
        std::int64_t target, limit, step;
        std::size_t current;
    };
    constexpr std::array<Row, 9> rows{{{0, 0, -1, 0},
                                       {0, noLimit, 0, 0},
                                       {5, 4, 4, 0},
                                       {5, 4, 5, 1},
                                       {5, 4, 5, 1},
                                       {3, 1, 0, 1}, // spawned again, into the trails at hand
                                       {2, noLimit, 2, 1},
                                       {0, noLimit, 0, 1},
                                       {4, -1, 0, 1}}};
    for (const Row& row : rows) {
        perform(
            [&](auto& commands) { simulation->advance(row.target, commands, {}, {}, row.limit); });
        EXPECT_EQ(simulation->step(), row.step) << row.target;
        EXPECT_EQ(simulation->current(), row.current) << row.target;
        EXPECT_EQ(simulation->trails()[row.current].get(), &simulation->image()) << row.target;
    }
    EXPECT_TRUE(simulation->warm(1, *queue, {}, {}));
    EXPECT_EQ(simulation->step(), 0);
    int chunks = 0;
    EXPECT_TRUE(simulation->warm(500, *queue, {}, {}, [&] { ++chunks; }));
    EXPECT_EQ(simulation->step(), 499);
    EXPECT_EQ(chunks, 3); // steps 1 to 240, 480 and 499
    EXPECT_TRUE(simulation->warm(0, *queue, {}, {}));
    EXPECT_EQ(simulation->step(), -1);
}

TEST_F(Particles, lookTheSameInAStillAndHoweverTheyWerePlayed) {
    const auto made = program(swarm.text());
    constexpr int last = 32; // steps: 8 frames at 15 a second, 16 at 30, 32 at 60
    const auto time = [](int step) { return static_cast<float>(step) / 60; };
    const auto still = StillRenderer::render(made, *device, 48, 32, time(last), 0, {});
    ASSERT_TRUE(still);
    EXPECT_NE(still, StillRenderer::render(made, *device, 48, 32, time(last - 1), 0, {}));

    for (const std::vector<int>& strides : {std::vector<int>(32, 1),
                                            std::vector<int>(16, 2),
                                            std::vector<int>(8, 4),
                                            {1, 4, 2, 3, 4, 4, 1, 4, 1, 4, 4},
                                            {4, 4, 4, 4, 4, 4, 0, 0, 4, 4}}) {
        const auto run = ProgramFrames::make(made, *device, 48, 32);
        ASSERT_TRUE(run);
        int step = 0;
        Picture shown = frame(*run, 0, 4);
        for (const int stride : strides)
            shown = frame(*run, time(step += stride), 4);
        EXPECT_EQ(shown, *still) << strides.size() << " frames";
    }
    const auto late = ProgramFrames::make(made, *device, 48, 32);
    Picture shown;
    for (int frames = 0; frames < 9; ++frames) // 33 steps, the spawning among them
        shown = frame(*late, time(last), 4);
    EXPECT_EQ(shown, *still);
    frame(*late, time(last + 1), 4);
    ASSERT_TRUE(late->warm(time(last), *queue, {})); // back in time: from the start
    EXPECT_EQ(frame(*late, time(last), 1), *still);
}

TEST_F(Particles, meetTheUniformsOfTheirStepNotOfTheFrame) {
    const auto made = program(ParticleEpisode{
        .place = "return float3(0.5, 0.5, 9.0);",
        .ink = "return float4(u.time * 60.0 + u.frame * 16.0, u.mouse.x + u.mouse.y * 16.0,\n"
               "        all(u.resolution == float2(8, 4)) && u.timeDelta == float(1.0 / 60.0)\n"
               "        && u.pad == 0 ? 255.0 : 0.0, 0.0) / 255.0;"}
                                  .text());
    const auto run = ProgramFrames::make(made, *device, 8, 4);
    ASSERT_TRUE(run);
    EXPECT_EQ(colorAt(frame(*run, 0, 4), 0, 0), (Color{0, 4 + 2 * 16, 255}));
    EXPECT_EQ(colorAt(frame(*run, 7.0f / 60, 99), 7, 3), (Color{7 + 7 * 16, 4 + 2 * 16, 255}));
    const auto still = StillRenderer::render(made, *device, 8, 4, 0.05f, 77, {});
    ASSERT_TRUE(still);
    EXPECT_EQ(colorAt(*still, 3, 1), (Color{3 + 3 * 16, 4 + 2 * 16, 255}));
}

TEST_F(Particles, addUpAndFadeAsTheEpisodeDecides) {
    ParticleEpisode episode{.count = 3,
                            .place = "return float3(0.5, 0.5, 9.0);",
                            .ink =
                                "return float4(16.0, u.frame == 0 ? 64.0 : 0.0, 0.0, 0.0) / 255.0;",
                            .fade = "return previous.at(uv) * 0.5;"};
    EXPECT_EQ(colorAt(still(episode.text(), 4, 4, 0), 1, 1), (Color{48, 192, 0}));
    EXPECT_EQ(colorAt(still(episode.text(), 4, 4, 2.0f / 60), 1, 1), (Color{48 + 24 + 12, 48, 0}));
    episode.fade = "";
    EXPECT_EQ(colorAt(still(episode.text(), 4, 4, 2.0f / 60), 1, 1), (Color{48, 0, 0}));
}

TEST_F(Particles, stayInsideTheProcessWhateverTheyDo) {
    const ParticleEpisode nowhere{.count = 100,
                                  .spawn =
                                      "q.at = float2(sqrt(-1.0 - id), 1e38 * (id + 1.0) * 1e3);",
                                  .update = "q.at.y = -q.at.y;",
                                  .place = "return float3(q.at, q.at.x);"};
    const ParticleEpisode empty{.count = 5, .fields = "", .spawn = "", .place = "return 0.5;"};
    const ParticleEpisode large{.count = 40,
                                .fields = "float2 at; float4 more[4095];",
                                .spawn = "q.at = 0.5; q.more[4094] = 0.5;",
                                .update = "q.more[7] += u.timeDelta;",
                                .place = "return q.more[4094].xyz;"};
    for (const ParticleEpisode& episode : {nowhere, empty, large}) {
        const Picture picture = still(episode.text(), 16, 16, 0.05f);
        const bool isSeen = episode.fields != nowhere.fields;
        EXPECT_EQ(colorAt(picture, 8, 8), (isSeen ? Color{255, 255, 255} : Color{}))
            << episode.fields;
    }
    // Arrows that leave the particle hit neither its neighbours nor anything else.
    const ParticleEpisode wild{.count = 1000,
                               .spawn = "q.at = float2(id < 500 ? 0.25 : 0.75, 0.5);",
                               .update = "if (id < 500) {\n"
                                         "        thread float2* arrow = &q.at;\n"
                                         "        arrow[int(id) * 1000 - 250000 + 1] = 9.0;\n"
                                         "        (&q)[500].at = 9.0;\n    }"};
    const Picture picture = still(wild.text(), 40, 20, 0.05f);
    EXPECT_EQ(colorAt(picture, 30, 10), (Color{255, 255, 255}));
}

TEST_F(Particles, areAbsentWhereTheDeviceHasNoRoomForThem) {
    const auto made = program(
        ParticleEpisode{.count = 4000000, .fields = "float2 at; float4 more[4095];"}.text());
    EXPECT_FALSE(ParticleSimulation::make(made->parts(), *device, 8, 8));
    EXPECT_FALSE(ProgramFrames::make(made, *device, 8, 8));
    EXPECT_FALSE(StillRenderer::render(made, *device, 8, 8, 0, 0, {}));
    EXPECT_TRUE(ProgramFrames::absence(*made, *device, 8, 8)
                    .starts_with("4000000 particles of 65536 bytes are too many for "));
    const auto small = program(swarm.text());
    for (const auto& [width, height] : {std::pair{0, 8}, {8, 0}, {-1, 8}, {8, 1 << 30}})
        EXPECT_FALSE(ProgramFrames::make(small, *device, width, height));
}

TEST_F(Particles, takeNothingFromTheHeapOnceWarm) {
    withoutValidation(); // which takes some
    const auto made = program(swarm.text());
    const auto run = ProgramFrames::make(made, *device, 32, 32);
    const auto texture = target(32, 32);
    ASSERT_TRUE(run && texture);
    FrameMoment moment;
    const auto drawFrame = [&] {
        auto commands = queue->commandBuffer();
        moment.time += 1.0f / 30;
        run->encode(
            *commands, {.moment = moment, .values = {}, .stepLimit = 4},
            {.descriptor = {.color = {.texture = texture.get(), .load = gpu::LoadAction::clear}}});
        commands->commit();
        commands->waitUntilCompleted();
    };
    EXPECT_EQ(heapCountOnceWarm(drawFrame), 0u);
}
