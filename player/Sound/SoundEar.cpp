#include "player/Sound/SoundEar.h"

#include "TarnwickCore/Live/LevelCodes.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double retryInterval = 5;        // seconds between two tries to open a device
constexpr double silentAfter = 0.3;        // seconds without samples of a device
constexpr std::int64_t framesASecond = 60; // of the levels of a pause
constexpr std::int64_t secondsBefore = 2;  // older levels have decayed by then

std::vector<float> monoOf(std::span<const SoundFrame> frames,
                          std::array<float, 2> SoundFrame::*pair) {
    std::vector<float> mono;
    for (const SoundFrame& frame : frames)
        mono.push_back(((frame.*pair)[0] + (frame.*pair)[1]) / 2);
    return mono;
}

} // namespace

SoundEar::SoundEar(const SampleRing& ring, const SoundClock& clock, LiveLevels& levels,
                   Listener listener)
    : ring_(ring), clock_(clock), levels_(levels), listener_(std::move(listener)),
      analyzer_(soundRate, ShaderAssembler::spectrumBins), captured_(AudioAnalyzer::window) {}

bool SoundEar::isCapturing() const {
    return input_.kind == SoundInput::Kind::microphone || input_.kind == SoundInput::Kind::desktop;
}

void SoundEar::choose(const SoundInput& input, double host) {
    input_ = input;
    capture_.reset();
    captured_.hear(std::vector<float>(AudioAnalyzer::window));
    analyzer_.reset();
    paused_.reset();
    show();
    nextTry_ = host;
    if (isCapturing())
        open(host);
}

// The first failure is told, the next ones are not.
void SoundEar::open(double host) {
    const bool isFirst = host <= nextTry_;
    nextTry_ = host + retryInterval;
    const auto hear = [this](std::span<const float> mono) { captured_.hear(mono); };
    try {
        capture_ = input_.kind == SoundInput::Kind::desktop ? SoundCapture::openDesktop(hear)
                                                            : SoundCapture::open(input_.name, hear);
    } catch (const SoundError& error) {
        if (isFirst)
            listener_.tell(error.what());
    }
}

void SoundEar::step(double host, const SoundRecord& record, std::int64_t lastJump) {
    const double elapsed = std::clamp(host - std::exchange(lastHost_, host), 0.0, 1.0);
    const bool isPlaying = record.transport.isPlaying;
    if (isPlaying)
        paused_.reset();
    if (isCapturing())
        hearDevice(host, elapsed);
    else if (isPlaying)
        hearRing(host, elapsed,
                 input_.kind == SoundInput::Kind::file ? &SoundFrame::file : &SoundFrame::own,
                 lastJump);
    else if (input_.kind == SoundInput::Kind::file && record.file)
        hearPaused(record);
    else
        hearSilence(elapsed);
}

void SoundEar::hearDevice(double host, double elapsed) {
    if (capture_ && capture_->isLost()) {
        capture_.reset();
        nextTry_ = host;
    }
    if (!capture_ && host >= nextTry_)
        open(host);
    const std::int64_t heard = captured_.heard();
    if (std::exchange(heard_, heard) != heard)
        lastHeard_ = host;
    if (host - lastHeard_ > silentAfter)
        return hearSilence(elapsed);
    analyzer_.analyse(captured_.samples(), elapsed);
    show();
}

void SoundEar::hearRing(double host, double elapsed, std::array<float, 2> SoundFrame::*pair,
                        std::int64_t lastJump) {
    std::array<SoundFrame, AudioAnalyzer::window> frames;
    const std::int64_t end = std::min(clock_.numberAt(host), ring_.taken());
    if (end >= lastJump && std::exchange(jump_, lastJump) != lastJump)
        analyzer_.reset();
    ring_.copyBefore(std::max<std::int64_t>(end, 0), frames);
    analyzer_.analyse(monoOf(frames, pair), elapsed);
    show();
}

// The levels that playing up to the time of the pause would have.
void SoundEar::hearPaused(const SoundRecord& record) {
    const Paused wanted{record.file, record.transport.time};
    if (paused_ == wanted)
        return;
    constexpr std::int64_t perFrame = soundRate / framesASecond;
    constexpr std::int64_t levels = secondsBefore * framesASecond;
    constexpr std::int64_t count = AudioAnalyzer::window + levels * perFrame;
    std::vector<float> stereo(2 * count);
    if (!record.file->samples(wanted.time - static_cast<double>(count) / soundRate, soundRate,
                              stereo))
        return; // the next step tries again
    const std::vector<float> mono = AudioAnalyzer::mono(stereo);
    analyzer_.reset();
    for (std::int64_t level = 1; level <= levels; ++level)
        analyzer_.analyse(std::span(mono).subspan(static_cast<std::size_t>(level * perFrame),
                                                  AudioAnalyzer::window),
                          1.0 / framesASecond);
    paused_ = wanted;
    show();
    listener_.pausedLevelsCame();
}

void SoundEar::hearSilence(double elapsed) {
    analyzer_.analyse({}, elapsed);
    show();
}

// Those of a device are rounded as a performance keeps them, so that its replay shows the same.
void SoundEar::show() {
    SoundLevels levels{.bands = analyzer_.bands(), .spectrum = analyzer_.spectrum()};
    if (isCapturing()) {
        const LevelCodes codes = LevelCodes::of(levels.bands, levels.spectrum);
        levels = {.bands = codes.bandValues(), .spectrum = codes.spectrumValues()};
    }
    levels_.show(std::make_shared<const SoundLevels>(std::move(levels)), lastHost_);
}

} // namespace tarnwick::player
