#include "TarnwickPlatform/Movie/Reading/SoundChunks.h"

#include "TarnwickPlatform/Movie/Reading/SoundFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::size_t mostChunks = 60;
constexpr double onGrid = 1e-3; // frames
static_assert(SoundChunks::framesOfChunk == SoundFile::rate);

// The cubic through two frames with the slopes of their neighbours (Catmull and Rom, 1974).
float interpolated(const std::array<float, 4>& around, float share) {
    const auto& [before, from, to, after] = around;
    const float slope = (to - before) / 2, nextSlope = (after - from) / 2, rise = to - from;
    return from + share * (slope + share * (3 * rise - 2 * slope - nextSlope +
                                            share * (slope + nextSlope - 2 * rise)));
}

} // namespace

// In the direction of the stretch. A file shorter than the stretch has each once.
std::vector<std::int64_t> SoundChunks::chunksOf(const SoundStretch& stretch) const {
    const double first = stretch.start * SoundFile::rate,
                 last = first + static_cast<double>(stretch.count) * SoundFile::rate / stretch.rate;
    const auto low = static_cast<std::int64_t>(std::max(std::min(first, last), 0.0)),
               high = static_cast<std::int64_t>(std::max({first, last, 0.0})) + 1;
    std::vector<std::int64_t> numbers;
    for (std::int64_t frame = low; frame <= std::min(high, low + length_);) {
        const std::int64_t inFile = wrapped(frame), number = inFile / framesOfChunk;
        if (std::ranges::find(numbers, number) == numbers.end())
            numbers.push_back(number);
        frame += std::min((number + 1) * framesOfChunk, length_) - inFile;
    }
    if (stretch.rate < 0)
        std::ranges::reverse(numbers);
    return numbers;
}

std::optional<std::int64_t> SoundChunks::missing(const SoundStretch& stretch,
                                                 std::int64_t ahead) const {
    if (length_ <= 0)
        return std::nullopt;
    std::vector<std::int64_t> numbers = chunksOf(stretch);
    const std::int64_t count = chunkCount(), direction = stretch.rate > 0 ? 1 : -1;
    for (; ahead > 0; --ahead)
        numbers.push_back((numbers.back() + direction + count) % count);
    const auto found = std::ranges::find_if_not(
        numbers, [this](std::int64_t number) { return chunks_.contains(number); });
    return found == numbers.end() ? std::nullopt : std::optional(*found);
}

// Either way round.
std::int64_t SoundChunks::distance(std::int64_t one, std::int64_t other) const {
    const std::int64_t apart = std::abs(one - other);
    return std::min(apart, std::abs(chunkCount() - apart));
}

void SoundChunks::keep(std::int64_t number, std::vector<float> stereo) {
    chunks_[number] = std::move(stereo);
    while (chunks_.size() > mostChunks)
        chunks_.erase(std::ranges::max_element(
            chunks_, {}, [&](const auto& entry) { return distance(entry.first, number); }));
}

float SoundChunks::sample(std::int64_t frame, std::size_t side) const {
    const std::int64_t inFile = wrapped(frame);
    const auto found = chunks_.find(inFile / framesOfChunk);
    const auto at = static_cast<std::size_t>(2 * (inFile % framesOfChunk)) + side;
    return found != chunks_.end() && at < found->second.size() ? found->second[at] : 0.0f;
}

float SoundChunks::at(double place, std::size_t side) const {
    const double whole = std::floor(place + onGrid);
    const auto frame = static_cast<std::int64_t>(whole);
    const auto share = static_cast<float>(place - whole);
    if (share < onGrid)
        return sample(frame, side);
    return interpolated({sample(frame - 1, side), sample(frame, side), sample(frame + 1, side),
                         sample(frame + 2, side)},
                        share);
}

void SoundChunks::fill(const SoundStretch& stretch, std::span<float> stereo) const {
    std::ranges::fill(stereo, 0.0f);
    if (length_ <= 0)
        return;
    const double first = stretch.start * SoundFile::rate, step = SoundFile::rate / stretch.rate;
    for (std::int64_t index = 0; index < stretch.count; ++index)
        for (std::size_t side = 0; side < 2; ++side)
            if (const double place = first + step * static_cast<double>(index); place > -onGrid)
                stereo[static_cast<std::size_t>(2 * index) + side] = at(place, side);
}

} // namespace tarnwick
