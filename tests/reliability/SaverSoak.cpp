// saverSoak [FRAMES] [SEED]: draws savers off screen as fast as the device can, on a clock of 60
// frames per second, with another size after every 60 to 600 frames and another episode after every
// 1,000 to 4,000. Prints what the process and its compiler take. Exits with 1 if that grows, or if
// a saver fails.
#include "TarnwickBase/FreedMemory.h"
#include "TarnwickRender/Targets/PictureTarget.h"
#include "saver/TarnwickSaverView.h"
#include "tests/reliability/Footprint.h"
#include "tests/saver/TestBundle.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace tarnwick {
namespace {

constexpr double framesPerSecond = 60;
constexpr long rows = 100;

// Each with a number that changes from saver to saver, so that it is compiled again.
const std::array<std::string, 5> episodes{
    R"(// @param size 0.4 0 1 Size
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(uv, 0.5 + 0.5 * sin(u.time * NUMBER), p.size);
}
)",
    R"(float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float2 at = 0.5 + 0.3 * float2(cos(u.time * NUMBER), sin(u.time * 3.0));
    float3 last = in.previous(uv).rgb * 0.9;
    return float4(max(last, float3(smoothstep(0.1, 0.0, length(uv - at)))), 1.0);
}
)",
    R"(// @particles 500
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return {float2(0.1, 0.002 * float(id))}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at.x = fract(q.at.x + 0.0001 * NUMBER * float(id));
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.02); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(0.5); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
)",
    R"(// @grid 8
struct Vertex { float4 position [[position]]; };
Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {
    return {float4(g * sin(u.time * NUMBER), 0.5, 1.0)};
}
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return float4(1.0); }
)",
    // Refused: the saver shows the sentence.
    R"(float4 shade(float2 uv, constant Uniforms& u, constant Params& p) { return float5(NUMBER); }
)"};

class Soak {
  public:
    explicit Soak(unsigned seed) : random_(seed) {}

    // Draws one saver; returns its frames, at most `most`. Fewer than 1 if it failed.
    long drawSaver(long most) {
        const std::size_t which = below(episodes.size());
        std::string text = episodes[which];
        text.replace(text.find("NUMBER"), 6, std::to_string(0.5 + 0.001 * ++savers_));
        const TestBundle files(text);
        TarnwickSaverView view({0, 0, 64, 36}, ScreenKind::fullScreen, files.bundle(),
                               [this] { return clock_; });
        const bool isRefused = which + 1 == episodes.size();
        if (isRefused || view.failure())
            return showFailure(view, isRefused);
        MTKView& metal = *view.metal();
        auto owned = std::make_unique<PictureTarget>(*metal.device(), metal.frame().pixels());
        PictureTarget& target = *owned;
        metal.setTarget(std::move(owned));
        const long frames = std::min(most, between(1000, 4000));
        long untilResize = between(60, 600);
        for (long frame = 0; frame < frames; ++frame, clock_ += 1 / framesPerSecond) {
            if (--untilResize == 0) {
                view.setFrame({0, 0, static_cast<double>(between(16, 160)),
                               static_cast<double>(between(16, 90))});
                untilResize = between(60, 600);
                ++resizes_;
            }
            view.judgeFrames();
            while (!metal.waitForRoom(0.1))
                view.judgeFrames();
            metal.draw();
            if (view.failure() || view.absence())
                return showFailure(view, false);
        }
        return target.lastPicture().bytes.empty() ? 0 : frames;
    }

    int savers() const { return savers_; }
    int resizes() const { return resizes_; }

  private:
    // One frame of the sentence.
    static long showFailure(const TarnwickSaverView& view, bool isExpected) {
        Picture picture = blackPicture({64, 36});
        view.drawRect(picture);
        if (!isExpected)
            std::printf("%s\n", view.failure().value_or(view.absence().value_or("")).c_str());
        return isExpected ? 1 : 0;
    }
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }
    long between(long first, long last) {
        return std::uniform_int_distribution<long>(first, last)(random_);
    }

    std::mt19937 random_;
    double clock_ = 0; // seconds
    int savers_ = 0, resizes_ = 0;
};

int soak(long frames, unsigned seed) {
    const auto begin = std::chrono::steady_clock::now();
    Soak soak(seed);
    FootprintCourse course("frames");
    bool hasFailed = false;
    long done = 0;
    for (long row = 1; row <= rows; ++row) {
        while (done < frames * row / rows) {
            const long drawn = soak.drawSaver(frames * row / rows - done);
            hasFailed = hasFailed || drawn < 1;
            done += std::max(drawn, 1L);
        }
        giveFreedMemoryBack();
        Footprint footprint = Footprint::present();
        for (const pid_t child : childProcesses())
            footprint += Footprint::of(child);
        course.add(done, footprint);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("seed %u: %ld frames, %d savers, %d sizes, %.0f s%s\n", seed, done, soak.savers(),
                soak.resizes(), time.count(), hasFailed ? ", A SAVER FAILED" : "");
    return course.isFlat() && !hasFailed ? 0 : 1;
}

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    tarnwick::keepFreedMemory();
    return tarnwick::soak(count > 1 ? std::atol(words[1]) : 432000,
                          count > 2 ? static_cast<unsigned>(std::atol(words[2])) : 1);
}
