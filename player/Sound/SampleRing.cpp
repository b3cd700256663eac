// The renderer takes frames back by lowering written_ before it looks at taken_; the device raises
// taken_ before it looks at written_. With sequentially consistent operations one of the two sees
// the other: the device does not read frames that are written again, and the renderer does not
// write frames that the device may read.
#include "player/Sound/SampleRing.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <bit>

namespace tarnwick::player {

SampleRing::SampleRing(std::int64_t capacity)
    : frames_(std::bit_ceil(static_cast<std::size_t>(capacity))),
      mask_(static_cast<std::int64_t>(frames_.size()) - 1) {}

std::int64_t SampleRing::take(std::span<SoundFrame> out) {
    const auto count = static_cast<std::int64_t>(out.size());
    const std::int64_t from = taken_.load(std::memory_order_relaxed);
    taken_.store(from + count);
    const std::int64_t there = std::clamp<std::int64_t>(written_.load() - from, 0, count);
    for (std::int64_t at = 0; at < there; ++at)
        out[static_cast<std::size_t>(at)] = slot(from + at);
    std::fill(out.begin() + there, out.end(), SoundFrame{});
    return there;
}

void SampleRing::put(std::int64_t from, std::span<const SoundFrame> frames) {
    precondition(from + std::ssize(frames) - taken() <= std::ssize(frames_) / 2,
                 "frames ahead of the device fit into half of the ring", "ahead", from - taken());
    for (const SoundFrame& frame : frames)
        slot(from++) = frame;
    written_.store(from);
}

void SampleRing::append(std::span<const SoundFrame> frames) {
    put(written(), frames);
}

bool SampleRing::replace(std::int64_t from, std::span<const SoundFrame> frames, std::int64_t fade) {
    const std::int64_t end = written();
    written_.store(std::min(from, end));
    if (taken_.load() > from) {
        written_.store(end);
        return false;
    }
    std::vector<SoundFrame> next(frames.begin(), frames.end());
    for (std::int64_t at = 0; at < std::min(fade, std::ssize(next)); ++at) {
        const SoundFrame old = from + at < end ? slot(from + at) : SoundFrame{};
        auto& frame = next[static_cast<std::size_t>(at)];
        frame = mixed(old, frame, static_cast<float>(at) / static_cast<float>(fade));
    }
    for (std::int64_t gap = std::max(end, from - std::ssize(frames_)); gap < from; ++gap)
        slot(gap) = {};
    put(from, next);
    return true;
}

void SampleRing::copyBefore(std::int64_t end, std::span<SoundFrame> out) const {
    std::int64_t number = end - std::ssize(out);
    for (SoundFrame& frame : out) {
        frame = number < 0 ? SoundFrame{} : slot(number);
        ++number;
    }
}

SoundFrame mixed(const SoundFrame& from, const SoundFrame& to, float share) {
    SoundFrame mix;
    for (std::size_t side = 0; side < 2; ++side) {
        mix.own[side] = from.own[side] + (to.own[side] - from.own[side]) * share;
        mix.file[side] = from.file[side] + (to.file[side] - from.file[side]) * share;
    }
    return mix;
}

} // namespace tarnwick::player
