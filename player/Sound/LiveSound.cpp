#include "player/Sound/LiveSound.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickPlatform/Sound/SoundPriority.h"
#include "player/Sound/FileSound.h"
#include "player/Sound/PerformedSound.h"
#include "player/Sound/Playback.h"
#include "player/Sound/SoundEar.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr std::int64_t capacity = 8 * soundRate; // frames of the ring
constexpr std::chrono::milliseconds renderInterval{4}, earInterval{10}, idleInterval{500};
constexpr std::int64_t noticedGaps = soundRate / 2; // missing frames that the user is told of

} // namespace

// Shared by the thread of the owner, the rendering one and the analysing one.
struct LiveSound::Shared {
    // Written by the owner, under the mutex.
    struct Wishes {
        SoundRecord record;
        SoundInput input;
        double delay = 0; // seconds
        bool isEnd = false;
    };

    Listener listener;
    LiveLevels& levels;
    SampleRing ring{capacity};
    SoundClock clock;
    SoundMix mix{ring, clock};
    SoundRenderer renderer{ring, clock, currentMediaTime};

    std::mutex mutex; // of all below
    std::condition_variable changed;
    Wishes wishes;
    std::uint64_t changes = 0;
    std::vector<std::shared_ptr<TimedSound>> retired; // destroyed on the analysing thread: may wait

    Shared(Listener given, LiveLevels& shown) : listener(std::move(given)), levels(shown) {}
    void change(const std::function<void(Wishes&)>& set);
    Wishes take(std::uint64_t& seen, std::chrono::milliseconds longest);
    void tellGaps();
    void render();
    void hear();

    // Of the rendering thread.
    const TimedSound* told = nullptr; // the sound whose gaps were told
    const TimedSound* own = nullptr;
    std::int64_t missing = 0; // frames, when that sound began
};

void LiveSound::Shared::change(const std::function<void(Wishes&)>& set) {
    {
        const std::lock_guard lock(mutex);
        retired.push_back(wishes.record.own);
        retired.push_back(wishes.record.file);
        set(wishes);
        ++changes;
    }
    changed.notify_all();
}

// Waits for a change, but not longer than that.
LiveSound::Shared::Wishes LiveSound::Shared::take(std::uint64_t& seen,
                                                  std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, longest, [&] { return seen != changes; });
    seen = changes;
    return wishes;
}

void LiveSound::Shared::render() {
    raisePriority();
    Playback playback(mix, clock, listener.tell);
    std::uint64_t seen = 0;
    while (true) {
        const Wishes now = take(seen, playback.isRunning() ? renderInterval : idleInterval);
        if (now.isEnd)
            return;
        playback.setDelay(now.delay);
        playback.keep(now.record.isHeard(), currentMediaTime());
        renderer.show(now.record);
        while (playback.isRunning() && renderer.step())
            playback.keep(now.record.isHeard(), currentMediaTime());
        tellGaps();
    }
}

// Says once for each program that its sound is too slow.
void LiveSound::Shared::tellGaps() {
    const TimedSound* playing = renderer.record().own.get();
    if (std::exchange(own, playing) != playing || !renderer.record().isHeard())
        missing = mix.missing();
    if (playing == nullptr || told == playing || mix.missing() - missing < noticedGaps)
        return;
    told = playing;
    listener.tell(
        "The sound has gaps: computing it takes too long, or waits for slow frames of the "
        "picture.");
}

void LiveSound::Shared::hear() {
    SoundEar ear(ring, clock, levels,
                 {.tell = listener.tell, .pausedLevelsCame = listener.pausedLevelsCame});
    SoundInput chosen;
    std::uint64_t seen = 0;
    bool isIdle = true;
    while (true) {
        const Wishes now = take(seen, isIdle ? idleInterval : earInterval);
        if (now.isEnd)
            return;
        if (std::exchange(chosen, now.input) != now.input)
            ear.choose(now.input, currentMediaTime());
        ear.step(currentMediaTime(), now.record, renderer.lastJump());
        isIdle = !now.record.transport.isPlaying && !ear.isCapturing() && !now.record.file;
        std::vector<std::shared_ptr<TimedSound>> old;
        const std::lock_guard lock(mutex);
        old.swap(retired);
    }
}

LiveSound::LiveSound(Listener listener)
    : levels_(std::make_shared<LiveLevels>()),
      shared_(std::make_unique<Shared>(std::move(listener), *levels_)),
      renderer_([shared = shared_.get()] { shared->render(); }),
      ear_([shared = shared_.get()] { shared->hear(); }) {}

LiveSound::~LiveSound() {
    shared_->change([](auto& wishes) { wishes.isEnd = true; });
    renderer_.join();
    ear_.join();
}

void LiveSound::show(std::shared_ptr<TimedSound> own, const Transport& transport) {
    shared_->change([&](auto& wishes) {
        wishes.record.own = std::move(own);
        wishes.record.transport = transport;
    });
}

void LiveSound::setInput(const SoundInput& input, std::shared_ptr<const Performance> replay) {
    std::shared_ptr<TimedSound> file;
    if (input.kind == SoundInput::Kind::file) {
        auto whole = std::make_shared<FileSound>(input.name, shared_->listener.tell);
        file = whole;
        if (replay)
            file = std::make_shared<PerformedSound>(std::move(whole), std::move(replay));
    }
    shared_->change([&](auto& wishes) {
        wishes.input = input;
        wishes.record.file = file;
    });
}

void LiveSound::setVolume(const SoundVolume& volume) {
    shared_->mix.setVolume(volume);
}

SoundFigures LiveSound::figures() const {
    return shared_->mix.figures();
}

void LiveSound::setDelay(double seconds) {
    shared_->change([=](auto& wishes) { wishes.delay = seconds; });
}

} // namespace tarnwick::player
