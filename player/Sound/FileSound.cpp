#include "player/Sound/FileSound.h"

#include "TarnwickPlatform/Movie/Reading/SoundFile.h"
#include "player/Sound/SampleRing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr std::int64_t chunkFrames = soundRate; // decoded and kept together
constexpr std::size_t mostChunks = 60;
constexpr std::int64_t chunksAhead = 4;
constexpr double onGrid = 1e-3; // frames

using Chunk = std::vector<float>; // interleaved stereo
static_assert(SoundFile::rate == soundRate);

// The cubic through two frames with the slopes of their neighbours (Catmull and Rom, 1974).
float interpolated(const std::array<float, 4>& around, float share) {
    const auto& [before, from, to, after] = around;
    const float slope = (to - before) / 2, nextSlope = (after - from) / 2, rise = to - from;
    return from + share * (slope + share * (3 * rise - 2 * slope - nextSlope +
                                            share * (slope + nextSlope - 2 * rise)));
}

} // namespace

struct FileSound::Decoding {
    const std::filesystem::path file;
    const std::function<void(const std::string&)> fail;
    std::mutex mutex; // of all below
    std::condition_variable changed;
    std::map<std::int64_t, Chunk> chunks; // by their number
    std::optional<std::int64_t> wanted;   // a chunk
    std::int64_t direction = 1;           // in which the next are wanted
    std::optional<std::int64_t> length;   // frames; absent: not open yet
    bool isEnd = false;
    std::thread thread;

    void run();
    std::int64_t chunkCount() const { return (*length + chunkFrames - 1) / chunkFrames; }
    std::int64_t missingChunk() const;
    std::int64_t distance(std::int64_t number) const;
    void keep(std::int64_t number, Chunk chunk, std::int64_t newLength);
    std::int64_t wrapped(std::int64_t frame) const { return (frame % *length + *length) % *length; }
    bool has(std::int64_t first, std::int64_t last) const;
    float sample(std::int64_t frame, std::size_t side) const;
    float at(double place, std::size_t side) const;
};

FileSound::FileSound(std::filesystem::path file, std::function<void(const std::string&)> fail)
    : decoding_(new Decoding{.file = std::move(file), .fail = std::move(fail)}) {
    decoding_->thread = std::thread([this] { decoding_->run(); });
}

FileSound::~FileSound() {
    {
        const std::lock_guard lock(decoding_->mutex);
        decoding_->isEnd = true;
    }
    decoding_->changed.notify_one();
    decoding_->thread.join();
}

const std::filesystem::path& FileSound::file() const {
    return decoding_->file;
}

void FileSound::Decoding::run() {
    std::unique_ptr<SoundFile> open;
    try {
        open = SoundFile::open(file);
    } catch (const MovieError& error) {
        fail(error.what());
    }
    std::unique_lock lock(mutex);
    length = open ? open->length() : 0;
    while (open) {
        changed.wait(lock, [this] { return isEnd || missingChunk() >= 0; });
        if (isEnd)
            return;
        const std::int64_t number = missingChunk();
        lock.unlock();
        Chunk chunk;
        try {
            chunk = open->read(number * chunkFrames, chunkFrames);
        } catch (const MovieError&) { // a damaged part is silent
        }
        lock.lock();
        keep(number, std::move(chunk), open->length());
    }
}

// The first chunk from the wanted one on that is not decoded; -1 if there is enough.
std::int64_t FileSound::Decoding::missingChunk() const {
    if (!wanted || *length <= 0)
        return -1;
    const std::int64_t count = chunkCount();
    for (std::int64_t ahead = 0; ahead < std::min(chunksAhead, count); ++ahead)
        if (const std::int64_t number = (*wanted + direction * ahead + count) % count;
            !chunks.contains(number))
            return number;
    return -1;
}

// From the wanted chunk, either way round.
std::int64_t FileSound::Decoding::distance(std::int64_t number) const {
    const std::int64_t apart = std::abs(number - *wanted);
    return std::min(apart, std::abs(chunkCount() - apart));
}

// Drops the chunks that are the farthest from the wanted one.
void FileSound::Decoding::keep(std::int64_t number, Chunk chunk, std::int64_t newLength) {
    chunks[number] = std::move(chunk);
    length = newLength;
    while (chunks.size() > mostChunks)
        chunks.erase(std::ranges::max_element(
            chunks, {}, [this](const auto& entry) { return distance(entry.first); }));
}

// Whether all frames from `first` to `last` are decoded.
bool FileSound::Decoding::has(std::int64_t first, std::int64_t last) const {
    for (std::int64_t frame = first; frame < last; frame += chunkFrames / 2)
        if (!chunks.contains(wrapped(frame) / chunkFrames))
            return false;
    return chunks.contains(wrapped(last) / chunkFrames);
}

float FileSound::Decoding::sample(std::int64_t frame, std::size_t side) const {
    const std::int64_t inFile = wrapped(frame);
    const auto found = chunks.find(inFile / chunkFrames);
    const auto at = static_cast<std::size_t>(2 * (inFile % chunkFrames)) + side;
    return found != chunks.end() && at < found->second.size() ? found->second[at] : 0.0f;
}

float FileSound::Decoding::at(double place, std::size_t side) const {
    const double whole = std::floor(place + onGrid);
    const auto frame = static_cast<std::int64_t>(whole);
    const auto share = static_cast<float>(place - whole);
    if (share < onGrid)
        return sample(frame, side);
    return interpolated({sample(frame - 1, side), sample(frame, side), sample(frame + 1, side),
                         sample(frame + 2, side)},
                        share);
}

bool FileSound::samples(double start, double rate, std::span<float> stereo) {
    std::ranges::fill(stereo, 0.0f);
    Decoding& decoding = *decoding_;
    const std::lock_guard lock(decoding.mutex);
    if (!decoding.length)
        return false;
    if (*decoding.length <= 0)
        return true;
    const double first = start * soundRate, step = soundRate / rate;
    const auto count = static_cast<std::int64_t>(stereo.size() / 2);
    const double last = first + step * static_cast<double>(count);
    const auto low = static_cast<std::int64_t>(std::max(std::min(first, last), 0.0)),
               high = static_cast<std::int64_t>(std::max({first, last, 0.0})) + 1;
    decoding.direction = step > 0 ? 1 : -1;
    decoding.wanted = decoding.wrapped(step > 0 ? low : high) / chunkFrames;
    decoding.changed.notify_one();
    if (!decoding.has(low, high))
        return false;
    for (std::int64_t index = 0; index < count; ++index)
        for (std::size_t side = 0; side < 2; ++side)
            if (const double place = first + step * static_cast<double>(index); place > -onGrid)
                stereo[static_cast<std::size_t>(2 * index) + side] = decoding.at(place, side);
    return true;
}

} // namespace tarnwick::player
