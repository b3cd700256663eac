#include "TarnwickPlatform/Sound/SoundOutput.h"

#include "TarnwickPlatform/Sound/SoundDevices.h"

#include <SDL_audio.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

struct SoundOutput::Device {
    Fill fill;
    std::optional<SoundDevice> open; // before `fill` is destroyed

    explicit Device(Fill given) : fill(std::move(given)) {}
};

namespace {

constexpr const char* bufferVariable = "PULSE_LATENCY_MSEC"; // of libpulse
constexpr double longestBuffer = 2;                          // seconds

void fillBytes(void* fill, Uint8* bytes, int length) {
    const auto count = static_cast<std::size_t>(length) / sizeof(float);
    (*static_cast<SoundOutput::Fill*>(fill))({reinterpret_cast<float*>(bytes), count});
}

} // namespace

SoundOutput::SoundOutput(std::unique_ptr<Device> device) : device_(std::move(device)) {}

SoundOutput::~SoundOutput() = default;

std::unique_ptr<SoundOutput> SoundOutput::open(Fill fill) {
    auto device = std::make_unique<Device>(std::move(fill));
    const SDL_AudioSpec wanted{.freq = rate,
                               .format = AUDIO_F32SYS,
                               .channels = 2,
                               .samples = period,
                               .callback = fillBytes,
                               .userdata = &device->fill};
    try {
        device->open.emplace(std::string(), wanted, false);
    } catch (const SoundError& error) {
        throw SoundError("The sound device cannot be opened: " + std::string(error.what()) + ".");
    }
    return std::unique_ptr<SoundOutput>(new SoundOutput(std::move(device)));
}

void SoundOutput::askForServerBuffer() {
    const auto milliseconds = std::to_string(std::lround(serverBuffer * 1000));
    setenv(bufferVariable, milliseconds.c_str(), 0);
}

// A server's buffer is full but for one call when it asks for the next one.
double SoundOutput::latency() {
    constexpr double call = static_cast<double>(period) / rate, shortest = 2 * call;
    const char* driver = SDL_GetCurrentAudioDriver();
    const char* milliseconds = std::getenv(bufferVariable);
    if (driver == nullptr || std::string_view(driver) != "pulseaudio" || milliseconds == nullptr)
        return shortest;
    return std::clamp(std::atof(milliseconds) / 1000 - call, shortest, longestBuffer);
}

void SoundOutput::setPaused(bool isPaused) {
    device_->open->setPaused(isPaused);
}

bool SoundOutput::isLost() const {
    return device_->open->isLost();
}

} // namespace tarnwick
