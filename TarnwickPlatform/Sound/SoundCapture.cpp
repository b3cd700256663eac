#include "TarnwickPlatform/Sound/SoundCapture.h"

#include "TarnwickPlatform/Sound/SoundDevices.h"

#include <optional>

namespace tarnwick {

struct SoundCapture::Device {
    Hear hear;
    std::optional<SoundDevice> open; // before `hear` is destroyed

    explicit Device(Hear given) : hear(std::move(given)) {}
};

namespace {

constexpr int period = 512; // samples in a call of Hear

void hearBytes(void* hear, Uint8* bytes, int length) {
    const auto count = static_cast<std::size_t>(length) / sizeof(float);
    (*static_cast<SoundCapture::Hear*>(hear))({reinterpret_cast<const float*>(bytes), count});
}

} // namespace

SoundCapture::SoundCapture(std::unique_ptr<Device> device) : device_(std::move(device)) {}

SoundCapture::~SoundCapture() = default;

std::vector<std::string> SoundCapture::devices() {
    try {
        const SoundSystem system;
        return inputNames();
    } catch (const SoundError&) {
        return {};
    }
}

std::unique_ptr<SoundCapture> SoundCapture::open(const std::string& name, Hear hear) {
    auto device = std::make_unique<Device>(std::move(hear));
    const SDL_AudioSpec wanted{.freq = rate,
                               .format = AUDIO_F32SYS,
                               .channels = 1,
                               .samples = period,
                               .callback = hearBytes,
                               .userdata = &device->hear};
    try {
        device->open.emplace(name, wanted, true);
    } catch (const SoundError& error) {
        throw SoundError((name.empty() ? std::string("The microphone") : name) +
                         " cannot be opened: " + error.what() + ".");
    }
    return std::unique_ptr<SoundCapture>(new SoundCapture(std::move(device)));
}

std::unique_ptr<SoundCapture> SoundCapture::openDesktop(Hear hear) {
    std::string name;
    std::optional<SoundSystem> system; // until the device is open
    try {
        system.emplace();
        name = monitorName();
    } catch (const SoundError&) { // no sound at all
    }
    if (name.empty())
        throw SoundError("The desktop's sound cannot be heard: no sound server offers a monitor of "
                         "its output.");
    return open(name, std::move(hear));
}

bool SoundCapture::isLost() const {
    return device_->open->isLost();
}

} // namespace tarnwick
