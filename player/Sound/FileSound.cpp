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
    std::mutex mutex; // of all below
    std::condition_variable changed;
    SoundChunks chunks;
    std::optional<SoundStretch> wanted;
    bool isOpen = false; // or cannot be opened
    bool isEnd = false;
    std::thread thread;

    void run();
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
    }
}

bool FileSound::samples(double start, double rate, std::span<float> stereo) {
    std::ranges::fill(stereo, 0.0f);
    Decoding& decoding = *decoding_;
    const std::lock_guard lock(decoding.mutex);
    if (!decoding.isOpen)
        return false;
    const SoundStretch stretch{start, rate, static_cast<std::int64_t>(stereo.size() / 2)};
    decoding.wanted = stretch;
    decoding.changed.notify_one();
    if (decoding.chunks.missing(stretch))
        return false;
    decoding.chunks.fill(stretch, stereo);
    return true;
}

} // namespace tarnwick::player
