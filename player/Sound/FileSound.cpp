#include "player/Sound/FileSound.h"

#include "TarnwickPlatform/Movie/Reading/SoundChunks.h"
#include "TarnwickPlatform/Movie/Reading/SoundFile.h"
#include "player/Sound/SampleRing.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr std::int64_t chunksAhead = 3;
static_assert(SoundFile::rate == soundRate);

} // namespace

struct FileSound::Decoding {
    const std::filesystem::path file;
    const std::function<void(const std::string&)> fail;
    std::mutex mutex;                // of all below
    std::condition_variable changed; // the wanted place, or the end
    std::condition_variable decoded;
    SoundChunks chunks;
    std::optional<SoundStretch> wanted;
    bool isOpen = false; // or cannot be opened
    bool isEnd = false;
    std::thread thread;

    void run();
    bool fill(const SoundStretch& stretch, std::span<float> stereo);
    std::optional<std::int64_t> missingChunk() const {
        return wanted ? chunks.missing(*wanted, chunksAhead) : std::nullopt;
    }
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
    isOpen = true;
    chunks.setLength(open ? open->length() : 0);
    decoded.notify_all();
    while (open) {
        changed.wait(lock, [this] { return isEnd || missingChunk(); });
        if (isEnd)
            return;
        const std::int64_t number = *missingChunk();
        lock.unlock();
        std::vector<float> chunk;
        try {
            chunk = open->read(number * SoundChunks::framesOfChunk, SoundChunks::framesOfChunk);
        } catch (const MovieError&) { // a damaged part is silent
        }
        lock.lock();
        chunks.setLength(open->length());
        chunks.keep(number, std::move(chunk));
        decoded.notify_all();
    }
}

// With the mutex. False if it is not decoded.
bool FileSound::Decoding::fill(const SoundStretch& stretch, std::span<float> stereo) {
    std::ranges::fill(stereo, 0.0f);
    if (!isOpen)
        return false;
    wanted = stretch;
    changed.notify_one();
    if (chunks.missing(stretch))
        return false;
    chunks.fill(stretch, stereo);
    return true;
}

bool FileSound::samples(double start, double rate, std::span<float> stereo) {
    return samplesWithin({}, start, rate, stereo);
}

bool FileSound::samplesWithin(std::chrono::milliseconds longest, double start, double rate,
                              std::span<float> stereo) {
    const SoundStretch stretch{start, rate, static_cast<std::int64_t>(stereo.size() / 2)};
    std::unique_lock lock(decoding_->mutex);
    return decoding_->decoded.wait_for(lock, longest,
                                       [&] { return decoding_->fill(stretch, stereo); });
}

} // namespace tarnwick::player
