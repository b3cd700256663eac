#include "player/Drawing/Drawing.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Drawing/PictureCopy.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double idle = 3600;        // seconds; mail ends the wait
constexpr double shortWait = 0.1;    // seconds between two looks at a frame that is drawn
constexpr double noticedFrame = 0.5; // seconds after which a frame that is drawn is reported
constexpr double channelInterval = 1.0 / 60; // seconds between two looks at paused channels
constexpr double shownInterval = 1;          // seconds over which frames are counted
constexpr double stepsOfFrame = 2; // of a simulation or of feedback, at 30 frames per second
// Seconds in which a CPU device leaves the processors to a compile: as long as a frame takes.
constexpr double shortestHold = 0.06, longestHold = 0.3;

constexpr const char* occupied = "The device still draws the frame that took too long. The new "
                                 "picture follows.";

std::uint32_t divided(std::uint32_t side, int divisor) {
    const auto by = static_cast<std::uint32_t>(divisor);
    return std::max<std::uint32_t>((side + by - 1) / by, 1);
}

} // namespace

Drawing::Drawing(LiveMail& mail, Listener listener) : mail_(mail), listener_(std::move(listener)) {}

void Drawing::run() {
    double wait = idle;
    while (true) {
        LiveMail::Delivery delivery = mail_.take(wait);
        if (delivery.isEnd)
            return;
        take(std::move(delivery.record));
        useDevice();
        for (const LiveMail::Request& request : delivery.requests)
            request(*this);
        wait = step();
    }
}

void Drawing::take(std::shared_ptr<const LiveRecord> record) {
    if (!record_ || !record || record->document != record_->document ||
        record->transport != record_->transport)
        ++clockNumber_;
    record_ = std::move(record);
}

void Drawing::useDevice() {
    if (!record_ || !record_->device || record_->device == device_)
        return;
    scene_.reset();
    next_.reset();
    stopped_.reset();
    drawn_.reset();
    abandoned_.reset();
    device_ = record_->device;
    channels_.use(device_);
    queue_ = device_->newCommandQueue();
    news_ = {};
    try {
        targets_.use(*device_);
    } catch (const std::exception&) { // present() tries again, and tells
    }
}

double Drawing::step() {
    if (!record_ || !queue_)
        return idle;
    if (device_->isLost()) {
        if (!std::exchange(news_.isDeviceLost, true))
            say();
        return idle;
    }
    if (!record_->program || isStopped()) {
        showAgain();
        return idle;
    }
    if (isOccupied())
        return 0;
    stopped_.reset();
    scale_.fix(record_->divisor);
    channels_.use(record_->program->usesInputs() ? shownChannels() : nullptr);
    if (!hasScene() || wantsExactScene())
        prepare();
    else
        next_.reset();
    const double wait = scene_ ? stepPlaying() : idle;
    return next_ ? 0 : wait;
}

// A frame that took too long occupies the device until it ends. A program that is drawn after it
// must not seem slow itself.
bool Drawing::isOccupied() {
    if (!abandoned_ || abandoned_->waitUntilCompleted(shortWait)) {
        abandoned_.reset();
        return false;
    }
    if (std::exchange(news_.failure, occupied) != occupied)
        say();
    return true;
}

// Draws the scene that is shown, which may be of an older program than the wanted one.
double Drawing::stepPlaying() {
    const bool isPaused = drawn_ == record_ && !record_->transport.isPlaying;
    SceneMoment now = moment();
    if (isPaused && hasScene() && !scene_->isBehind(now) && !channels_.areBehind()) {
        showAgain();
        return channels_.areUsed() ? channelInterval : idle;
    }
    if (next_ && !now.replay && !scene_->isWarm(now))
        return 0; // the old program is not brought to another time for a few frames
    const double due = currentMediaTime();
    const double wait = std::max(clock_.secondsUntilDue(due), holdSeconds(due));
    if (wait > 0)
        return wait;
    clock_.begin(currentMediaTime());
    bringChannels(now);
    if (isStopped())
        return idle;
    if (!isWarm(*scene_, now))
        return 0;
    drawn_ = record_;
    if (!draw(*scene_, now))
        return isStopped() ? idle : shortWait;
    showFrame();
    return 0;
}

// Shows the last frame, or black without one, on windows that were covered.
void Drawing::showAgain() {
    if (targets_.areStale())
        present(scene_ ? scene_->picture() : nullptr);
}

bool Drawing::present(const gpu::Texture* picture) {
    try {
        targets_.present(picture, *queue_);
    } catch (const std::exception& error) {
        news_.failure = error.what();
        cannotPresent_ = true;
        say();
        return false;
    }
    if (std::exchange(cannotPresent_, false))
        news_.failure.clear();
    return true;
}

void Drawing::stop(std::string failure) {
    stopped_ = Stopped{programs(), record_, record_->replay, wantedSize()};
    next_.reset();
    news_.failure = std::move(failure);
    news_.warming.reset();
    say();
}

bool Drawing::isStopped() const {
    return stopped_ && stopped_->programs == programs() && stopped_->replay == record_->replay &&
           stopped_->record->longestFrame == record_->longestFrame &&
           stopped_->size == wantedSize();
}

// Of the episode and of those that its channels show.
std::vector<const ShaderProgram*> Drawing::programs() const {
    std::vector<const ShaderProgram*> all{record_->program.get()};
    if (const auto channels = shownChannels())
        for (const auto& [document, episode] : channels->episodes)
            all.push_back(episode.program.get());
    return all;
}

// A replay has its own.
std::shared_ptr<const LiveChannels> Drawing::shownChannels() const {
    return record_->replay ? nullptr : record_->channels;
}

// A replay keeps the time of a frame that is not ready until it is drawn: a device or a file that
// is slower than the clock makes pictures late, not wrong.
double Drawing::drawnTime() const {
    const bool isHeld = held_ && held_->clock == clockNumber_ && held_->replay == record_->replay;
    return isHeld ? held_->time : record_->transport.timeAt(currentMediaTime());
}

// A paused picture is that of its time. After an edit it is so once the state is computed again.
bool Drawing::wantsExactScene() const {
    return !record_->transport.isPlaying && scene_->isFollower();
}

// A frame that would not end before a compile begins is drawn after it if the device needs the
// processors for it: the new program is seen earlier, because it waits for no frame of the old one.
// Long compiles and typing without a pause do not stop the picture.
double Drawing::holdSeconds(double now) const {
    const double frame = news_.frameSeconds;
    if (!record_->compilesAt || !hasScene() || !device_->info().isCPU ||
        now + frame < *record_->compilesAt)
        return 0;
    const double hold = std::clamp(frame, shortestHold, longestHold);
    return std::min(*record_->compilesAt + hold, ended_ + frame + hold) - now;
}

PixelSize Drawing::wantedSize() const {
    return {divided(record_->size.width, scale_.divisor()),
            divided(record_->size.height, scale_.divisor())};
}

bool Drawing::hasScene() const {
    return scene_ && scene_->program() == record_->program && scene_->size() == wantedSize();
}

SceneMoment Drawing::moment() const {
    return {.time = drawnTime(),
            .mouse = record_->mouse,
            .settings = record_->settings,
            .isPlaying = record_->transport.isPlaying,
            .clock = clockNumber_,
            .levels = record_->levels ? record_->levels->newest() : nullptr,
            .hearsOwnSound = record_->hearsOwnSound,
            .restart = record_->restart,
            .replay = record_->replay,
            .replayedInputs = record_->replayedInputs};
}

// Makes the scene of the wanted program and size, a part at a time, and shows it once its first
// frame is drawn.
void Drawing::prepare() {
    const PixelSize size = wantedSize();
    if (!next_ || next_->program() != record_->program || next_->size() != size)
        next_ = Scene::make(record_->program, device_, size);
    if (!next_) {
        stop(ProgramFrames::absence(*record_->program, *device_, size.width, size.height));
        return;
    }
    SceneMoment now = moment();
    bringChannels(now);
    if (!next_)
        return;
    if (!hasScene() && scene_ && scene_->clock() == clockNumber_)
        next_->follow(*scene_, *queue_);
    if (!isWarm(*next_, now) || !draw(*next_, now))
        return;
    const bool isNew = !scene_ || scene_->program() != next_->program();
    scene_ = std::move(next_);
    news_.firstDraw = isNew ? news_.frameSeconds : news_.firstDraw;
    news_.document = record_->document;
    news_.revision = record_->revision;
    news_.isTooSlow = false;
    news_.failure.clear();
    scale_.restart();
    times_.restart();
    drawn_ = record_;
    showFrame();
}

void Drawing::showFrame() {
    if (!present(scene_->picture()))
        return;
    countFrame(currentMediaTime());
    say();
}

void Drawing::bringChannels(SceneMoment& moment) {
    channelSeconds_ = 0;
    if (!channels_.areUsed())
        return;
    channels_.bring(moment, wantedSize(), scene_ ? scene_->picture() : nullptr, *queue_,
                    [this](Scene& scene, const SceneMoment& at) { return drawChannel(scene, at); });
    moment.channels = channels_.textures();
}

bool Drawing::drawChannel(Scene& scene, const SceneMoment& moment) {
    auto commands = isStopped() ? std::nullopt : scene.encode(moment, *queue_);
    if (!commands)
        return false;
    commands->commit();
    if (!finishes(*commands) || commands->status() != gpu::CommandBufferStatus::completed)
        return false;
    scene.finish();
    channelSeconds_ += news_.frameSeconds;
    return true;
}

bool Drawing::isWarm(Scene& scene, const SceneMoment& moment) {
    const auto warming = scene.warm(moment, *queue_);
    if (!scene.failure().empty()) {
        stop(scene.failure());
        return false;
    }
    if (warming && moment.replay)
        held_ = {moment.time, moment.clock, moment.replay};
    const double frame = stepsOfFrame * scene.warmingSeconds();
    if (warming && frame > PreviewScale::longestFrame)
        scale_.add(frame);
    const bool changes = warming.has_value() || news_.warming.has_value();
    news_.warming = warming;
    if (changes)
        say();
    return !warming;
}

bool Drawing::draw(Scene& scene, const SceneMoment& moment) {
    const double begin = currentMediaTime();
    auto commands = scene.encode(moment, *queue_);
    if (!scene.failure().empty())
        stop(scene.failure());
    if (!commands)
        return false;
    if (moment.replay)
        channelSeconds_ = currentMediaTime() - begin; // encoding draws its channels
    commands->commit();
    const double last = &scene == scene_.get() ? news_.frameSeconds : 0;
    if (!finishes(*commands, last) || commands->status() != gpu::CommandBufferStatus::completed)
        return false;
    scene.finish();
    held_.reset();
    news_.frameSeconds += channelSeconds_;
    news_.time = scene.episodeTime(moment);
    news_.picture = scene.size();
    news_.divisor = scale_.divisor();
    news_.hitLoopBudget = commands->hitLoopBudget();
    if (&scene == scene_.get())
        scale_.add(news_.frameSeconds);
    return true;
}

// Waits for a frame. False if it takes too long or the thread ends. `last`: the seconds of the
// frame before it, which are told until it takes longer.
bool Drawing::finishes(gpu::CommandBuffer& commands, double last) {
    const double begin = currentMediaTime();
    const auto seconds = [begin] { return currentMediaTime() - begin; };
    times_.setLongestFrame(record_->longestFrame);
    while (!commands.waitUntilCompleted(shortWait)) {
        if (mail_.isEnd())
            return false;
        if (times_.areTooLong(seconds(), commands.hitLoopBudget())) {
            news_.isTooSlow = true;
            news_.isInFrame = false;
            stop("The shader takes too long.");
            commands.abandon();
            abandoned_.emplace(std::move(commands));
            times_.restart();
            return false;
        }
        news_.isInFrame = true;
        news_.frameSeconds = std::max(last, seconds());
        if (seconds() > noticedFrame)
            say();
    }
    news_.isInFrame = false;
    ended_ = currentMediaTime();
    news_.frameSeconds = seconds();
    times_.add(news_.frameSeconds, commands.hitLoopBudget());
    return true;
}

void Drawing::countFrame(double now) {
    shown_.push_back(now);
    while (now - shown_.front() > shownInterval)
        shown_.pop_front();
    news_.framesPerSecond =
        shown_.size() < 2 ? 0 : static_cast<double>(shown_.size() - 1) / (now - shown_.front());
}

void Drawing::addTarget(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size) {
    targets_.add(id, std::move(target), size);
}

void Drawing::resizeTarget(int id, const PixelSize& size) {
    targets_.resize(id, size);
}

void Drawing::exposeTarget(int id) {
    targets_.expose(id);
}

void Drawing::removeTarget(int id) {
    targets_.remove(id);
}

std::optional<Picture> Drawing::picture() {
    const gpu::Texture* shown = scene_ ? scene_->picture() : nullptr;
    return shown == nullptr ? std::nullopt : copyOf(*shown, *device_, *queue_);
}

} // namespace tarnwick::player
