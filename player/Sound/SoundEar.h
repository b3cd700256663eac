// Analyses the sound that episodes react to.
#pragma once

#include "TarnwickCore/Live/AudioAnalyzer.h"
#include "TarnwickPlatform/Sound/SoundCapture.h"
#include "player/Drawing/LiveLevels.h"
#include "player/Sound/CapturedSound.h"
#include "player/Sound/SampleRing.h"
#include "player/Sound/SoundClock.h"
#include "player/Sound/SoundInput.h"
#include "player/Sound/SoundRenderer.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// One thread, but for the captured sound.
class SoundEar {
  public:
    struct Listener {
        std::function<void(const std::string&)> tell; // one sentence
        std::function<void()> pausedLevelsCame;       // of a file at the time of a pause
    };

    SoundEar(const SampleRing& ring, const SoundClock& clock, LiveLevels& levels,
             Listener listener);

    // Opens a microphone or the desktop's sound. Blocks. If it cannot be opened, the input is
    // silent and step() tries again every few seconds.
    void choose(const SoundInput& input, double host);

    // Shows the levels of the sound that is heard at `host`. `lastJump` is SoundRenderer's.
    void step(double host, const SoundRecord& record, std::int64_t lastJump);

    // Whether step() has something to do while the transport is paused.
    bool isCapturing() const;

  private:
    void open(double host);
    void hearDevice(double host, double elapsed);
    void hearRing(double host, double elapsed, std::array<float, 2> SoundFrame::*pair,
                  std::int64_t lastJump);
    void hearPaused(const SoundRecord& record);
    void hearSilence(double elapsed);
    void show();

    const SampleRing& ring_;
    const SoundClock& clock_;
    LiveLevels& levels_;
    Listener listener_;
    SoundInput input_;
    AudioAnalyzer analyzer_;
    CapturedSound captured_;                // before the device that fills it
    std::unique_ptr<SoundCapture> capture_; // null: none is wanted, or it cannot be opened
    double nextTry_ = 0;                    // host seconds
    double lastHost_ = 0, lastHeard_ = 0;   // host seconds: of the last step, of new samples
    std::int64_t heard_ = 0;                // captured samples at the last step
    std::int64_t jump_ = 0;                 // the last jump that was heard
    struct Paused {
        std::shared_ptr<TimedSound> file;
        double time;

        bool operator==(const Paused&) const = default;
    };
    std::optional<Paused> paused_; // whose levels are shown
};

} // namespace tarnwick::player
