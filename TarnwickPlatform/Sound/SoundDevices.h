// SDL's sound system, shared by the devices.
#pragma once

#include <SDL_audio.h>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

// Keeps SDL's sound system open. Throws SoundError.
class SoundSystem {
  public:
    SoundSystem();
    ~SoundSystem();
    SoundSystem(const SoundSystem&) = delete;
    SoundSystem& operator=(const SoundSystem&) = delete;
};

// The names of the inputs, monitors of outputs among them.
std::vector<std::string> inputNames();
// The input that hears the default output; empty without one.
std::string monitorName();

// An open device of SDL.
class SoundDevice {
  public:
    // Throws SoundError with the reason.
    SoundDevice(const std::string& name, const SDL_AudioSpec& wanted, bool isCapture);
    ~SoundDevice();
    SoundDevice(const SoundDevice&) = delete;
    SoundDevice& operator=(const SoundDevice&) = delete;

    void setPaused(bool isPaused);
    bool isLost() const;

  private:
    SoundSystem system_;
    SDL_AudioDeviceID id_;
};

} // namespace tarnwick
