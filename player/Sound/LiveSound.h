// The sound of the player: one thread renders it ahead, one analyses it.
#pragma once

#include "TarnwickCore/Performance/Performance.h"
#include "player/Drawing/LiveLevels.h"
#include "player/Sound/SoundInput.h"
#include "player/Sound/SoundMix.h"
#include "player/Sound/SoundRenderer.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace tarnwick::player {

// Functions belong to one thread and do not wait for the sound.
class LiveSound {
  public:
    // Called on threads of the sound until the destructor returns.
    struct Listener {
        std::function<void(const std::string&)> tell; // one sentence for the user
        std::function<void()> pausedLevelsCame;       // the picture of a pause must be drawn again
    };

    explicit LiveSound(Listener listener);
    // Waits for both threads: for the part that is rendered, and a device that is opened.
    ~LiveSound();
    LiveSound(const LiveSound&) = delete;
    LiveSound& operator=(const LiveSound&) = delete;

    // Replaces what is heard. The file is that of the input.
    void show(std::shared_ptr<TimedSound> own, const Transport& transport);
    // A file follows the transport, or the episode's clock in a performance that is replayed.
    void setInput(const SoundInput& input, std::shared_ptr<const Performance> replay = nullptr);
    void setVolume(const SoundVolume& volume);
    // Seconds by which the user hears the device later than it says, below 0: earlier.
    void setDelay(double seconds);

    SoundFigures figures() const;

    // The levels of the input. Never null.
    const std::shared_ptr<LiveLevels>& levels() const { return levels_; }

  private:
    struct Shared;

    std::shared_ptr<LiveLevels> levels_;
    std::unique_ptr<Shared> shared_;
    std::thread renderer_, ear_;
};

} // namespace tarnwick::player
