#include "tests/player/Sound/Playing.h"

#include <algorithm>
#include <random>
#include <thread>

namespace tarnwick::player {
namespace {

// The differences between neighbours.
void expectSteps(const std::vector<double>& samples, double step, double tolerance = 0) {
    for (std::size_t at = 1; at < samples.size(); ++at)
        ASSERT_NEAR(samples[at] - samples[at - 1], step, tolerance) << at;
}

TEST(SoundRenderer, playsEachFrameOnceFromAnyPlace) {
    Playing device;
    for (const double from : {0.0, 7.3, 2.00001}) {
        device.show(counting(), Transport{}.sought(from, device.host).played(device.host));
        device.play(settled);
        const double wanted = device.wanted();
        const auto samples = device.own(3);
        EXPECT_NEAR(samples.front(), wanted, 1);
        expectSteps(samples, 1);
    }
}

TEST(SoundRenderer, followsTheSpeedAsATapeDoes) {
    Playing device;
    Transport transport = Transport{}.sought(10, device.host).played(device.host);
    for (const double speed : {2.0, 0.5, -1.0, -2.5, 4.0}) {
        transport = transport.withSpeed(speed, device.host);
        device.show(counting(), transport);
        device.play(settled);
        const double wanted = device.wanted();
        const auto samples = device.own(1);
        EXPECT_NEAR(samples.front(), wanted, 4) << speed;
        expectSteps(samples, speed, 0.1); // of floats at these numbers
    }
    device.show(counting(), transport.withSpeed(8, device.host));
    device.play(settled);
    EXPECT_EQ(std::ranges::count(device.own(0.5), 0.0), std::ssize(device.own(0.5)));
}

TEST(SoundRenderer, wrapsAtTheEndsOfALoopWithoutGap) {
    Playing device;
    const LoopRange loop{1.0, 1.5};
    for (const double speed : {1.0, -1.0}) {
        device.show(counting(), Transport{}
                                    .sought(1.2, device.host)
                                    .withLoop(loop, device.host)
                                    .withSpeed(speed, device.host)
                                    .played(device.host));
        device.play(settled);
        const auto samples = device.own(3);
        std::int64_t steps = 0;
        for (std::size_t at = 1; at < samples.size(); ++at)
            steps += samples[at] - samples[at - 1] == speed;
        // Six ends, each with a fade.
        EXPECT_GE(steps, std::ssize(samples) - 7 * (SoundRenderer::fade + 1));
        const auto [low, high] = std::ranges::minmax(samples);
        EXPECT_GE(low, loop.start * soundRate - SoundRenderer::fade);
        EXPECT_LE(high, loop.end * soundRate + SoundRenderer::fade);
    }
}

// Whatever is done while a tone plays: no sample is far from its neighbours.
TEST(SoundRenderer, clicksAtNoChange) {
    Playing device;
    std::mt19937 random(7);
    Transport transport = Transport{}.played(device.host);
    double last = 0;
    for (int change = 0; change < 200; ++change) {
        const auto number = static_cast<double>(random() % 1000) / 1000;
        switch (random() % 6) {
        case 0:
            transport = transport.sought(20 * number, device.host);
            break;
        case 1:
            transport = transport.withSpeed(8 * number - 4, device.host);
            break;
        case 2:
            transport = transport.withLoop(LoopRange{number, 2 * number + 0.1}, device.host);
            break;
        case 3:
            transport = transport.withLoop(std::nullopt, device.host);
            break;
        case 4:
            transport =
                transport.isPlaying ? transport.paused(device.host) : transport.played(device.host);
            break;
        default:
            break; // another sound only
        }
        device.show(tone(60, 0.3 + 0.2 * number), transport);
        for (const double sample : device.own(0.15 * number)) {
            // Four times as fast, the tone itself moves by 0.016 a sample; a fade adds 0.002.
            ASSERT_LT(std::abs(sample - last), 0.02) << change;
            last = sample;
        }
    }
}

// A crystal that is off by five hundredths of a percent, for two minutes.
TEST(SoundRenderer, staysWithTheTransportWithoutAJump) {
    for (const double slowness : {1.0005, 0.9995}) {
        Playing device(slowness);
        device.show(counting(), Transport{}.played(device.host));
        device.play(settled);
        for (int part = 0; part < 24; ++part) {
            const double wanted = device.wanted();
            const auto samples = device.own(5);
            ASSERT_NEAR(samples.front(), wanted, 0.012 * soundRate) << part;
            for (std::size_t at = 1; at < samples.size(); ++at)
                ASSERT_NEAR(samples[at] - samples[at - 1], 1, 0.6) << part; // floats above 2^22
        }
    }
}

TEST(SoundRenderer, isInTimeAgainAfterADeviceThatDidNotWait) {
    Playing device;
    device.show(counting(), Transport{}.played(device.host));
    device.play(1);
    std::vector<SoundFrame> block(Playing::period);
    for (int missed = 0; missed < 100; ++missed) {
        device.ring.take(block);
        device.clock.taken(device.ring.taken(), Playing::period, device.host);
        device.host += static_cast<double>(Playing::period) / soundRate;
    }
    EXPECT_EQ(block.back(), SoundFrame{});
    device.render();
    for (int part = 0; part < 4; ++part) { // the frames before the first new one are late
        device.ring.take(block);
        device.clock.taken(device.ring.taken(), Playing::period, device.host);
        device.host += static_cast<double>(Playing::period) / soundRate;
        device.render();
    }
    device.play(settled);
    const double wanted = device.wanted();
    const auto samples = device.own(1);
    EXPECT_NEAR(samples.front(), wanted, 2);
    expectSteps(samples, 1);
}

// A part takes longer than the whole ring: there are gaps, and later none.
TEST(SoundRenderer, survivesAGPUThatIsBusyForSeconds) {
    Playing device;
    const auto slow = counting();
    bool isBusy = true;
    slow->function = [&, from = slow->function](double time) {
        device.host += isBusy ? 0.01 : 0; // 30 s for the shortest part
        return from(time);
    };
    device.show(slow, Transport{}.played(device.host));
    std::vector<SoundFrame> block(Playing::period);
    for (int part = 0; part < 20; ++part) {
        device.ring.take(block);
        device.clock.taken(device.ring.taken(), Playing::period, device.host);
        device.renderer.step();
    }
    isBusy = false;
    for (int part = 0; part < 300; ++part) {
        device.ring.take(block);
        device.clock.taken(device.ring.taken(), Playing::period, device.host);
        device.host += static_cast<double>(Playing::period) / soundRate;
        device.render();
    }
    const double wanted = device.wanted();
    const auto samples = device.own(1);
    EXPECT_NEAR(samples.front(), wanted, 0.04 * soundRate); // and corrected slowly
}

TEST(SoundRenderer, beginsASoundOnceItIsThere) {
    Playing device;
    const auto late = counting();
    late->isThere = false;
    device.show(late, Transport{}.played(device.host));
    for (const double sample : device.own(0.3))
        ASSERT_EQ(sample, 0);
    late->isThere = true;
    device.play(2 * settled);
    expectSteps(device.own(0.5), 1);
}

// The device takes while frames are replaced: each is of its number, or silent.
TEST(SampleRing, givesNoFrameThatIsWrittenAgain) {
    SampleRing ring(4096);
    std::atomic<bool> isEnd = false;
    std::int64_t written = 0; // frames that the device got
    std::thread device([&] {
        std::vector<SoundFrame> block(64);
        while (written < 100000) {
            std::this_thread::yield(); // to the renderer, where both share a processor
            const std::int64_t from = ring.taken();
            written += ring.take(block);
            for (std::size_t at = 0; at < block.size(); ++at) {
                const auto number =
                    static_cast<float>((from + static_cast<std::int64_t>(at)) % 4096);
                const bool isRight = block[at] == SoundFrame{} ||
                                     (block[at].own[0] == number && block[at].file[1] == number);
                if (!isRight)
                    ADD_FAILURE() << from << " " << at;
            }
        }
        isEnd = true;
    });
    std::mt19937 random(3);
    while (!isEnd) {
        const bool isReplaced = random() % 2 == 0 || ring.written() < ring.taken();
        if (!isReplaced && ring.written() - ring.taken() > 512)
            continue;
        const std::int64_t from =
            isReplaced ? ring.taken() + static_cast<std::int64_t>(random() % 200) : ring.written();
        std::vector<SoundFrame> frames(200);
        for (std::size_t at = 0; at < frames.size(); ++at) {
            const auto number = static_cast<float>((from + static_cast<std::int64_t>(at)) % 4096);
            frames[at] = {{number, number}, {number, number}};
        }
        if (isReplaced)
            ring.replace(from, frames, 0);
        else
            ring.append(frames);
    }
    device.join();
}

} // namespace
} // namespace tarnwick::player
