#include "player/Channels/FrameSource.h"

#include "TarnwickCore/Editor/FileWatcher.h"
#include "TarnwickPlatform/Cameras/Cameras.h"
#include "TarnwickPlatform/Media/LoopedMedia.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds watchInterval{1}; // between two looks at the file or the camera
constexpr double farAway = 1;                    // seconds between two times after a seek

} // namespace

struct FrameSource::Shared {
    SourceKind kind;
    std::filesystem::path place;
    std::atomic<bool> isEnd{false};
    std::mutex calling; // held during a call of `tell`
    Tell tell;          // empty once the owner is gone
    std::mutex mutex;   // of the next ones
    std::condition_variable changed;
    Frame frame;
    std::optional<double> wanted = 0; // the first frame is read at once
    std::optional<double> reached;    // the time whose frame is the newest
    bool isUnreadable = false;
    std::array<std::shared_ptr<Picture>, 3> memory; // of the source's thread; used in turn

    void run();
    void readFile();
    void readCamera();

    bool rest() { // false at the end
        std::unique_lock lock(mutex);
        return !changed.wait_for(lock, watchInterval, [this] { return isEnd.load(); });
    }
    std::shared_ptr<Picture> room();
    void publish(std::shared_ptr<const Picture> picture);
    void noteReached(std::optional<double> time);
    void noteUnreadable();
    std::optional<double> wantedAfter(std::optional<double> time);
    bool isFar(double time);
    void say(const std::string& sentence);
};

// A picture that is not read any more, else a new one.
std::shared_ptr<Picture> FrameSource::Shared::room() {
    for (auto& picture : memory)
        if (picture && picture.use_count() == 1)
            return picture;
    auto made = std::make_shared<Picture>();
    for (auto& picture : memory)
        if (!picture) {
            picture = made;
            break;
        }
    return made;
}

void FrameSource::Shared::publish(std::shared_ptr<const Picture> picture) {
    const std::lock_guard lock(mutex);
    frame.picture = std::move(picture);
    ++frame.number;
}

void FrameSource::Shared::noteReached(std::optional<double> time) {
    {
        const std::lock_guard lock(mutex);
        reached = time;
        isUnreadable = false;
    }
    changed.notify_all();
}

void FrameSource::Shared::noteUnreadable() {
    {
        const std::lock_guard lock(mutex);
        isUnreadable = true;
    }
    changed.notify_all();
}

// Waits for a time other than `time`, at most until the next look at the file.
std::optional<double> FrameSource::Shared::wantedAfter(std::optional<double> time) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, watchInterval, [&] { return isEnd.load() || wanted != time; });
    return wanted;
}

bool FrameSource::Shared::isFar(double time) {
    const std::lock_guard lock(mutex);
    return isEnd || (wanted && std::abs(*wanted - time) > farAway);
}

void FrameSource::Shared::say(const std::string& sentence) {
    const std::lock_guard call(calling);
    if (tell)
        tell(sentence);
}

void FrameSource::Shared::run() {
    std::string told;
    while (!isEnd) {
        const auto stamp = FileWatcher::stamp(place);
        try {
            kind == SourceKind::camera ? readCamera() : readFile();
            told.clear();                       // the file was saved again
        } catch (const std::exception& error) { // MediaError, or no memory
            noteUnreadable();
            if (!isEnd && std::exchange(told, error.what()) != error.what())
                say(error.what());
            // A file is tried again after a change, a camera each time.
            while (rest() && kind == SourceKind::file && FileWatcher::stamp(place) == stamp)
                continue;
        }
    }
}

// Returns once the file has changed. A deleted file keeps its picture.
void FrameSource::Shared::readFile() {
    const auto stamp = FileWatcher::stamp(place);
    const auto media = LoopedMedia::open(place, [this] { return isEnd.load(); });
    std::optional<double> done; // absent: no time, or the way to it was ended
    auto looked = std::chrono::steady_clock::now();
    while (!isEnd) {
        const std::optional<double> time = wantedAfter(done);
        if (!time || isEnd)
            continue;
        if (time != done) {
            bool isEnded = false;
            if (media->goTo(*time, [&] { return isEnded = isFar(*time); })) {
                auto picture = room();
                media->readPicture(*picture);
                publish(std::move(picture));
            }
            done = isEnded ? std::nullopt : time;
            noteReached(done);
        }
        if (std::chrono::steady_clock::now() - looked < watchInterval)
            continue;
        looked = std::chrono::steady_clock::now();
        if (const auto now = FileWatcher::stamp(place); now && now != stamp)
            return;
    }
}

void FrameSource::Shared::readCamera() {
    const auto reader =
        openCamera(place, {.longestSide = longestMoving, .isEnd = [this] { return isEnd.load(); }});
    while (!isEnd && reader->next()) {
        auto picture = room();
        reader->readPicture(*picture);
        publish(std::move(picture));
    }
    if (!isEnd)
        throw MediaError("The camera " + place.string() + " gives no more pictures.");
}

FrameSource::FrameSource(SourceKind kind, std::filesystem::path place, Tell tell)
    : shared_(std::make_shared<Shared>()) {
    shared_->kind = kind;
    shared_->place = std::move(place);
    shared_->tell = std::move(tell);
    std::thread([shared = shared_] { shared->run(); }).detach();
}

FrameSource::~FrameSource() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->isEnd = true;
    }
    shared_->changed.notify_all();
    const std::lock_guard call(shared_->calling);
    shared_->tell = nullptr;
}

FrameSource::Frame FrameSource::newest() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->frame;
}

std::uint64_t FrameSource::number() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->frame.number;
}

void FrameSource::follow(double time) {
    {
        const std::lock_guard lock(shared_->mutex);
        if (shared_->wanted == time)
            return;
        shared_->wanted = time;
    }
    shared_->changed.notify_all();
}

bool FrameSource::reach(double time, std::chrono::milliseconds longest) {
    if (shared_->kind == SourceKind::camera)
        return true;
    follow(time);
    std::unique_lock lock(shared_->mutex);
    return shared_->changed.wait_for(
        lock, longest, [&] { return shared_->isUnreadable || shared_->reached == time; });
}

} // namespace tarnwick::player
