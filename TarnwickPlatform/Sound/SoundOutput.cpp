#include "TarnwickPlatform/Sound/SoundOutput.h"

#include "TarnwickPlatform/Sound/SoundDevices.h"

#include <optional>

namespace tarnwick {

struct SoundOutput::Device {
    Fill fill;
    std::optional<SoundDevice> open; // before `fill` is destroyed

    explicit Device(Fill given) : fill(std::move(given)) {}
};

namespace {

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

void SoundOutput::setPaused(bool isPaused) {
    device_->open->setPaused(isPaused);
}

bool SoundOutput::isLost() const {
    return device_->open->isLost();
}

} // namespace tarnwick
