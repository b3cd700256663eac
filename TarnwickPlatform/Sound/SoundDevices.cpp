#include "TarnwickPlatform/Sound/SoundDevices.h"

#include "TarnwickPlatform/Sound/SoundError.h"

#include <alsa/error.h>

#include <SDL.h>
#include <algorithm>
#include <mutex>

namespace tarnwick {
namespace {

// SDL counts the users of a subsystem, but its calls to start and end one must not overlap.
std::mutex& systemLock() {
    static std::mutex lock;
    return lock;
}

// ALSA, which SDL uses without a sound server, writes several lines to standard error for each
// device that is absent.
void suppressAlsaWords(const char*, int, const char*, int, const char*, ...) {}

void setHints() {
    snd_lib_error_set_handler(suppressAlsaWords);
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_INCLUDE_MONITORS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tarnwick");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Episode");
}

std::string defaultOutput() {
    char* name = nullptr;
    SDL_AudioSpec spec;
    if (SDL_GetDefaultAudioInfo(&name, &spec, 0) != 0 || name == nullptr)
        return {};
    const std::string copied = name;
    SDL_free(name);
    return copied;
}

// SDL keeps the last error of each thread, but frees it only at the end of threads that it started.
SoundError lastError() {
    const SoundError error(SDL_GetError());
    SDL_TLSCleanup();
    return error;
}

} // namespace

SoundSystem::SoundSystem() {
    const std::lock_guard lock(systemLock());
    setHints();
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0)
        throw lastError();
}

SoundSystem::~SoundSystem() {
    const std::lock_guard lock(systemLock());
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    SDL_TLSCleanup();
}

std::vector<std::string> inputNames() {
    std::vector<std::string> names;
    for (int index = 0; index < SDL_GetNumAudioDevices(1); ++index)
        if (const char* name = SDL_GetAudioDeviceName(index, 1))
            names.emplace_back(name);
    return names;
}

// A sound server names a monitor after its output, in the language of the server.
std::string monitorName() {
    const std::string output = defaultOutput();
    const auto names = inputNames();
    const auto found = std::ranges::find_if(names, [&](const std::string& name) {
        return !output.empty() && name != output && name.find(output) != std::string::npos;
    });
    return found == names.end() ? std::string() : *found;
}

SoundDevice::SoundDevice(const std::string& name, const SDL_AudioSpec& wanted, bool isCapture)
    : id_(SDL_OpenAudioDevice(name.empty() ? nullptr : name.c_str(), isCapture ? 1 : 0, &wanted,
                              nullptr, 0)) {
    if (id_ == 0)
        throw lastError();
    setPaused(false);
    SDL_TLSCleanup(); // another thread may close it
}

SoundDevice::~SoundDevice() {
    SDL_CloseAudioDevice(id_);
}

void SoundDevice::setPaused(bool isPaused) {
    SDL_PauseAudioDevice(id_, isPaused ? 1 : 0);
}

bool SoundDevice::isLost() const {
    return SDL_GetAudioDeviceStatus(id_) == SDL_AUDIO_STOPPED;
}

} // namespace tarnwick
