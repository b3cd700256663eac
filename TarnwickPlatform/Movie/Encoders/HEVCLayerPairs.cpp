#include "TarnwickPlatform/Movie/Encoders/HEVCLayerPairs.h"

#include "TarnwickPlatform/Movie/Encoders/HEVCInOrder.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <algorithm>

namespace tarnwick::hevc {
namespace {

ByteView viewOf(const VideoPacket& packet) {
    return {reinterpret_cast<const std::uint8_t*>(packet.bytes.data()), packet.bytes.size()};
}

std::vector<std::byte> bytesOf(const Bytes& bytes) {
    const auto* from = reinterpret_cast<const std::byte*>(bytes.data());
    return {from, from + bytes.size()};
}

[[noreturn]] void disagree() {
    throw MovieError("The HEVC encoders of colour and alpha disagree about the pictures.");
}

} // namespace

std::vector<std::byte> LayerPairs::configuration() const {
    return bytesOf(stream.configuration());
}

void LayerPairs::finish(const VideoPacketSink& sink) {
    give(sink, More::isNotComing);
    if (!held.empty() || !colour.waiting.empty() || !alpha.waiting.empty())
        disagree();
}

void LayerPairs::give(const VideoPacketSink& sink, More more) {
    while (!colour.waiting.empty() && !alpha.waiting.empty()) {
        if (colour.waiting.front().isKeyFrame) {
            groupBegin = colour.waiting.front().frame;
            colour.beginGroup();
            alpha.beginGroup();
        }
        if (nextFit()) {
            takePair();
            giveHeld(sink);
        } else if (const auto end = groupEnd(more)) {
            giveAgain(sink, *end);
        } else {
            return;
        }
    }
}

bool LayerPairs::nextFit() const {
    const VideoPacket& first = colour.waiting.front();
    const VideoPacket& second = alpha.waiting.front();
    return first.frame == second.frame && first.isKeyFrame == second.isKeyFrame &&
           stream.pairsUp(viewOf(first), viewOf(second));
}

void LayerPairs::Layer::beginGroup() {
    group.clear();
}

void LayerPairs::Layer::take() {
    group.push_back(std::move(waiting.front()));
    waiting.pop_front();
}

// Takes all packets of frames before `end`.
void LayerPairs::Layer::takeUntil(std::int64_t end) {
    const auto left = std::stable_partition(waiting.begin(), waiting.end(),
                                            [end](const auto& one) { return one.frame < end; });
    group.insert(group.end(), std::move_iterator(waiting.begin()), std::move_iterator(left));
    waiting.erase(waiting.begin(), left);
}

VideoPacket LayerPairs::paired(const VideoPacket& first, const VideoPacket& second) const {
    return {.bytes = bytesOf(stream.accessUnit(viewOf(first), viewOf(second))),
            .frame = first.frame,
            .isKeyFrame = first.isKeyFrame,
            .kind = first.kind};
}

void LayerPairs::takePair() {
    colour.take();
    alpha.take();
    held.push_back(paired(colour.group.back(), alpha.group.back()));
    greatest = std::max(colour.group.size() == 1 ? groupBegin : greatest, held.back().frame);
}

// Gives pairs only if all frames up to the greatest are among them, so that encoding can start
// again after that frame.
void LayerPairs::giveHeld(const VideoPacketSink& sink) {
    if (greatest + 1 - groupBegin != static_cast<std::int64_t>(colour.group.size()))
        return;
    for (VideoPacket& packet : std::exchange(held, {}))
        sink(std::move(packet));
}

// The frame after the group's last one; absent until all packets of the group have arrived.
std::optional<std::int64_t> LayerPairs::groupEnd(More more) const {
    const auto known = colour.group.size() + colour.waiting.size();
    const auto next = std::find_if(colour.waiting.begin() + 1, colour.waiting.end(),
                                   [](const VideoPacket& packet) { return packet.isKeyFrame; });
    if (next == colour.waiting.end() && more == More::isComing)
        return std::nullopt;
    const std::int64_t end =
        next != colour.waiting.end() ? next->frame : groupBegin + static_cast<std::int64_t>(known);
    const auto ofAlpha = std::ranges::count_if(
        alpha.waiting, [end](const VideoPacket& packet) { return packet.frame < end; });
    const auto frames = static_cast<std::int64_t>(alpha.group.size()) + ofAlpha;
    return frames == end - groupBegin || more == More::isNotComing ? std::optional(end)
                                                                   : std::nullopt;
}

void LayerPairs::giveAgain(const VideoPacketSink& sink, std::int64_t end) {
    const auto given = static_cast<std::int64_t>(colour.group.size() - held.size());
    const std::int64_t first = groupBegin + given;
    held.clear();
    colour.takeUntil(end);
    alpha.takeUntil(end);
    const auto colours = encodedInOrder(colour.group, first, *encoders.colour());
    const auto alphas = encodedInOrder(alpha.group, first, *encoders.alpha());
    const auto frames = static_cast<std::size_t>(end - first);
    if (colours.size() != frames || alphas.size() != frames)
        disagree();
    for (std::size_t packet = 0; packet < frames; ++packet) {
        if (colours[packet].frame != alphas[packet].frame)
            disagree();
        sink(paired(colours[packet], alphas[packet]));
    }
}

} // namespace tarnwick::hevc
