#include "TarnwickPlatform/Movie/Writing/PacketOrder.h"

namespace tarnwick {

namespace {

constexpr std::size_t bytesThatWaitForSound = 8U << 20;
constexpr std::size_t bytesInAll = 32U << 20;

} // namespace

void PacketOrder::expect(const VideoSettings& video, const AudioSettings* sound) {
    secondsPerFrame = 1.0 / static_cast<double>(video.framesPerSecond);
    if (!sound)
        return;
    secondsPerSample = 1.0 / static_cast<double>(sound->sampleRate);
    soundFinished = false;
}

void PacketOrder::put(VideoPacket packet) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return abandoned || pictureBytes < bytesInAll; });
    if (abandoned)
        return;
    pictureBytes += packet.bytes.size();
    pictures.push_back(std::move(packet));
    changed.notify_all();
}

void PacketOrder::put(SoundPacket packet) {
    std::lock_guard lock(mutex);
    if (abandoned)
        return;
    sounds.push_back(std::move(packet));
    changed.notify_all();
}

void PacketOrder::finishVideo() {
    std::lock_guard lock(mutex);
    videoFinished = true;
    changed.notify_all();
}

void PacketOrder::finishSound() {
    std::lock_guard lock(mutex);
    soundFinished = true;
    changed.notify_all();
}

bool PacketOrder::soundIsNext() const {
    if (sounds.empty())
        return false;
    const double time = static_cast<double>(sounds.front().sample) * secondsPerSample;
    return time <= pictureTime || (videoFinished && pictures.empty());
}

bool PacketOrder::pictureIsNext() const {
    return !pictures.empty() &&
           (soundFinished || !sounds.empty() || pictureBytes > bytesThatWaitForSound);
}

std::optional<MoviePacket> PacketOrder::take() {
    std::unique_lock lock(mutex);
    const auto allOut = [&] {
        return videoFinished && soundFinished && pictures.empty() && sounds.empty();
    };
    changed.wait(lock, [&] { return abandoned || soundIsNext() || pictureIsNext() || allOut(); });
    if (abandoned || allOut())
        return std::nullopt;
    changed.notify_all();
    if (soundIsNext()) {
        MoviePacket packet(std::move(sounds.front()));
        sounds.pop_front();
        return packet;
    }
    pictureTime += secondsPerFrame;
    pictureBytes -= pictures.front().bytes.size();
    MoviePacket packet(std::move(pictures.front()));
    pictures.pop_front();
    return packet;
}

void PacketOrder::abandon() {
    std::lock_guard lock(mutex);
    abandoned = true;
    changed.notify_all();
}

} // namespace tarnwick
