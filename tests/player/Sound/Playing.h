// Plays a sound without a device: frames are pulled as one would, at a clock of its own.
#pragma once

#include "player/Sound/SoundRenderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace tarnwick::player {

// A sound that is a function of the time.
class FunctionSound : public TimedSound {
  public:
    explicit FunctionSound(std::function<double(double)> given) : function(std::move(given)) {}

    bool samples(double start, double rate, std::span<float> stereo) override {
        for (std::size_t at = 0; at < stereo.size(); ++at)
            stereo[at] = static_cast<float>(function(start + static_cast<double>(at / 2) / rate));
        return isThere;
    }

    std::function<double(double)> function;
    bool isThere = true;
};

// Each sample is the number of its frame in the episode.
inline std::shared_ptr<FunctionSound> counting() {
    return std::make_shared<FunctionSound>([](double time) { return time * soundRate; });
}

inline std::shared_ptr<FunctionSound> tone(double hertz, double amplitude = 0.5) {
    return std::make_shared<FunctionSound>(
        [=](double time) { return amplitude * std::sin(2 * std::numbers::pi * hertz * time); });
}

class Playing {
  public:
    static constexpr std::int64_t period = 512;

    // The device needs `slowness` times as long as the host thinks.
    explicit Playing(double slowness = 1) : slowness(slowness) {}

    // The frames that the device takes in that time.
    std::vector<SoundFrame> play(double seconds) {
        std::vector<SoundFrame> all;
        for (const double end = host + seconds; host < end;) {
            std::vector<SoundFrame> block(period);
            const std::int64_t there = ring.take(block);
            if (ring.taken() > period) {
                EXPECT_EQ(there, period) << "a gap at " << host;
            }
            clock.taken(ring.taken(), period, host);
            all.insert(all.end(), block.begin(), block.end());
            host += slowness * period / soundRate;
            render();
        }
        return all;
    }
    // The left samples of the episode's own sound.
    std::vector<double> own(double seconds) {
        std::vector<double> samples;
        for (const SoundFrame& frame : play(seconds))
            samples.push_back(static_cast<double>(frame.own[0]));
        return samples;
    }
    void render() {
        while (renderer.step()) {
        }
    }
    void show(std::shared_ptr<TimedSound> sound, const Transport& transport) {
        renderer.show({.own = std::move(sound), .transport = transport});
    }
    // The time that the transport has when the next frame that is taken is heard, in frames.
    double wanted() const {
        return renderer.record().transport.timeAt(clock.hostOf(ring.taken())) * soundRate;
    }

    double slowness;
    double host = 1000; // seconds
    SampleRing ring{8 * soundRate};
    SoundClock clock;
    SoundRenderer renderer{ring, clock, [this] { return host; }};
};

// A change is heard after this many seconds: the frames that are too near to be replaced, and the
// fade.
inline constexpr double settled = 0.06;

} // namespace tarnwick::player
