// The kernel computes the time of a sample as a sum of two floats. The sum is as exact as a float
// can be if the first one is exact, as multiples of a sixteenth of a second are; otherwise all
// samples of a call would be shifted by up to the distance of two floats, which is 0.4 samples
// after 100 s, and calls would click where they meet.
#include "player/Sound/EpisodeSound.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/SoundRun.h"
#include "player/Sound/SampleRing.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr std::int64_t gridFrames = soundRate / 16;
constexpr double onGrid = 1e-3;     // frames
constexpr double retryInterval = 1; // seconds, to open a device

} // namespace

struct EpisodeSound::Shared {
    std::shared_ptr<KernelDevice> devices;
    std::shared_ptr<gpu::Device> device; // of the run; outlives it
    std::shared_ptr<const ShaderProgram> program;
    std::unique_ptr<SoundRun> run; // null before the first use, or if the device fails
    double nextTry = -1e9;         // host seconds

    SoundRun* ready();
};

// A device that was lost is opened again.
SoundRun* EpisodeSound::Shared::ready() {
    if (run && !device->isLost())
        return run.get();
    if (currentMediaTime() < nextTry)
        return nullptr;
    nextTry = currentMediaTime() + retryInterval;
    run.reset();
    device = devices->device();
    if (device == devices->pictures())
        run = SoundRun::make(program, *device);
    else if (device)
        run = SoundRun::makeElsewhere(program, *device);
    return run.get();
}

EpisodeSound::EpisodeSound(std::shared_ptr<const ShaderProgram> program,
                           std::shared_ptr<KernelDevice> device, ParamValues values)
    : shared_(std::make_shared<Shared>()), values_(std::move(values)) {
    shared_->devices = std::move(device);
    shared_->program = std::move(program);
}

EpisodeSound::EpisodeSound(std::shared_ptr<Shared> shared, ParamValues values)
    : shared_(std::move(shared)), values_(std::move(values)) {}

std::shared_ptr<EpisodeSound> EpisodeSound::with(ParamValues values) const {
    return std::shared_ptr<EpisodeSound>(new EpisodeSound(shared_, std::move(values)));
}

// A CPU driver compiles a kernel when it runs for the first time.
void EpisodeSound::prepare() {
    run(0, soundRate, 1, values_);
}

std::optional<std::span<const float>>
EpisodeSound::run(double start, double rate, std::uint32_t count, const ParamValues& values) {
    SoundRun* ready = shared_->ready();
    return ready == nullptr ? std::nullopt : ready->samples(start, rate, count, values);
}

bool EpisodeSound::samples(double start, double rate, std::span<float> stereo) {
    std::ranges::fill(stereo, 0.0f);
    const double frame = start * soundRate;
    const bool isOnGrid = rate == soundRate && std::abs(frame - std::round(frame)) < onGrid;
    const std::int64_t skipped =
        isOnGrid ? std::max<std::int64_t>(std::llround(frame), 0) % gridFrames : 0;
    const double from =
        isOnGrid ? static_cast<double>(std::llround(frame) - skipped) / soundRate : start;
    const auto count =
        static_cast<std::uint32_t>(stereo.size() / 2 + static_cast<std::size_t>(skipped));
    const auto found = run(from, rate, count, values_);
    if (!found)
        return true;
    std::transform(found->begin() + 2 * skipped, found->end(), stereo.begin(),
                   [](float sample) { return std::isfinite(sample) ? sample : 0.0f; });
    return true;
}

} // namespace tarnwick::player
