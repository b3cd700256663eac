#include "player/Drawing/SourceChannel.h"

#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::milliseconds longestWait{50};

} // namespace

SourceChannel::SourceChannel(const std::filesystem::path& file, FrameSource::Tell tell,
                             gpu::Device& device)
    : device_(device), source_(SourceKind::file, file, std::move(tell)) {}

bool SourceChannel::prepare(double time) {
    return source_.reach(time, longestWait);
}

const gpu::Texture* SourceChannel::at(double) {
    const FrameSource::Frame frame = source_.newest();
    if (frame.picture && std::exchange(shown_, frame.number) != frame.number)
        texture_.show(*frame.picture, device_);
    return texture_.texture();
}

} // namespace tarnwick::player
