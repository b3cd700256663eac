#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick {
namespace {

constexpr double longestStretch = 10; // seconds of the file that are decoded at once

} // namespace

std::unique_ptr<LoopedSound> LoopedSound::open(const std::filesystem::path& file) {
    return std::unique_ptr<LoopedSound>(new LoopedSound(SoundFile::open(file)));
}

// A container may give another length than its sound has. The end is read at first, so that the
// sound repeats at the same place whatever was read before.
LoopedSound::LoopedSound(std::unique_ptr<SoundFile> file) : file_(std::move(file)) {
    file_->read(std::max<std::int64_t>(file_->length() - SoundFile::rate, 0), 3 * SoundFile::rate);
    chunks_.setLength(file_->length());
}

double LoopedSound::seconds() const {
    return static_cast<double>(chunks_.length()) / SoundFile::rate;
}

void LoopedSound::samples(double start, double rate, std::span<float> stereo) {
    const auto most = static_cast<std::size_t>(std::max(longestStretch * std::abs(rate), 1.0));
    while (!stereo.empty()) {
        const std::size_t count = std::min(most, stereo.size() / 2);
        const SoundStretch stretch{start, rate, static_cast<std::int64_t>(count)};
        while (const auto number = chunks_.missing(stretch)) {
            std::vector<float> chunk;
            try {
                chunk =
                    file_->read(*number * SoundChunks::framesOfChunk, SoundChunks::framesOfChunk);
            } catch (const MovieError&) { // damaged
            }
            chunks_.keep(*number, std::move(chunk));
        }
        chunks_.fill(stretch, stereo.first(2 * count));
        stereo = stereo.subspan(2 * count);
        start += static_cast<double>(count) / rate;
    }
}

} // namespace tarnwick
