// The levels and the spectrum that an episode hears of a sound, frame after frame.
#pragma once

#include "TarnwickCore/Live/AudioAnalyzer.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <optional>
#include <span>

namespace tarnwick {

// One thread at a time.
class SoundListener {
  public:
    static constexpr double rate = ShaderAssembler::sampleRate;
    // Seconds of sound before a frame's time that the frame hears.
    static constexpr double heard = AudioAnalyzer::window / rate;

    SoundListener() : analyzer_(rate, ShaderAssembler::spectrumBins) {}

    const AudioAnalyzer& analyzer() const { return analyzer_; }

    // Hears the AudioAnalyzer::window samples that end at `time` seconds. The levels continue from
    // the last call; after a step back in time they start from silence.
    void listen(double time, std::span<const float> mono);
    // The next call starts from silence.
    void reset();

  private:
    AudioAnalyzer analyzer_;
    std::optional<double> lastTime_; // seconds
};

} // namespace tarnwick
