#include "player/App/Player.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/App/Background.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int draftDelay = 1000;   // milliseconds from the first change to its draft
constexpr int watchInterval = 500; // milliseconds
constexpr double shortestStop = 5; // seconds between two ticks of the watch
// More than processors: work in the background may wait for a file system.
constexpr int mostInBackground = 64;
constexpr double lossInterval = 60; // seconds between two losses by the same program
constexpr const char* longestFrameKey = "drawing/longestFrame"; // seconds

double longestFrameOf(const UserSettings& settings) {
    const double kept =
        settings.value(QLatin1String(longestFrameKey), FrameTimes::defaultLongestFrame).toDouble();
    const bool isChoice =
        kept >= FrameTimes::leastLongestFrame && kept <= FrameTimes::greatestLongestFrame;
    return isChoice ? kept : FrameTimes::defaultLongestFrame;
}

} // namespace

Player::Player() : longestFrame_(longestFrameOf(userSettings_)) {
    QThreadPool::globalInstance()->setMaxThreadCount(mostInBackground);
    connect(&device_, &LiveDevice::changed, this, &Player::useDevice);
    compiler_ = std::make_unique<LiveCompiler>([this](CompileResult result) {
        auto moved = std::make_shared<CompileResult>(std::move(result));
        QMetaObject::invokeMethod(
            this, [this, moved] { take(std::move(*moved)); }, Qt::QueuedConnection);
    });
    picture_ = std::make_unique<LivePicture>([this](const LiveNews& news) {
        QMetaObject::invokeMethod(
            this, [this, news] { hear(news); }, Qt::QueuedConnection);
    });
    autosave_.setSingleShot(true);
    autosave_.setInterval(draftDelay);
    connect(&autosave_, &QTimer::timeout, this, &Player::keepDrafts);
    connect(&watch_, &QTimer::timeout, this, &Player::lookAtFiles);
    connect(&watch_, &QTimer::timeout, this, &Player::skipStop);
    ticked_ = currentMediaTime();
    watch_.start(watchInterval);
    publish(); // the device, before windows add targets of it
}

// First the threads, whose calls use the rest.
Player::~Player() {
    picture_.reset();
    compiler_.reset();
}

std::string Player::trouble() const {
    if (!device_.device())
        return device_.absence();
    if (active_ != nullptr && isRefused(*active_))
        return "The device was lost twice while it drew this episode. An edit draws it again.";
    return news_.failure;
}

OpenDocument* Player::add(Document document, std::unique_ptr<Autosave> autosave) {
    const auto fail = [player = QPointer<Player>(this)](const std::string& sentence) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [player, sentence] {
                if (player)
                    player->tell(QString::fromStdString(sentence));
            },
            Qt::QueuedConnection);
    };
    documents_.push_back(std::make_unique<OpenDocument>(
        ++lastId_, std::move(document),
        std::make_unique<DraftKeeper>(drafts_, draftsFolder(), std::move(autosave), fail)));
    OpenDocument* added = documents_.back().get();
    connect(added, &OpenDocument::compileWanted, this, &Player::compile);
    connect(added, &OpenDocument::fileFailed, this, &Player::told);
    for (auto change : {&OpenDocument::settingsChanged, &OpenDocument::transportChanged,
                        &OpenDocument::resultChanged})
        connect(added, change, this, &Player::publish);
    for (auto change : {&OpenDocument::textChanged, &OpenDocument::settingsChanged})
        connect(added, change, this, &Player::keepSoon);
    connect(added, &OpenDocument::textChanged, this, [this, added] {
        if (added == active_ && added->compilesAt())
            publish();
    });
    emit documentAdded(added);
    activate(added);
    added->compileNow();
    return added;
}

void Player::open(const std::filesystem::path& file, QObject* context, Opened opened) {
    std::vector<OpenFile> open;
    for (const auto& document : documents_)
        if (document->document().file())
            open.push_back({*document->document().file(), document->id()});
    inBackground(
        this, [file, open = std::move(open)] { return read(file, open); },
        [this, opened = std::move(opened), context = QPointer<QObject>(context)](Read read) {
            if (context)
                takeRead(std::move(read), context, opened);
        });
}

Player::Read Player::read(const std::filesystem::path& file, const std::vector<OpenFile>& open) {
    std::error_code error;
    Read read{.file = std::filesystem::absolute(file, error)};
    for (const OpenFile& one : open)
        if (std::filesystem::equivalent(one.file, read.file, error)) {
            read.document = one.document;
            return read;
        }
    try {
        read.files = readDocumentFiles(read.file);
    } catch (const DocumentFileError& failure) {
        read.error = failure.what();
    }
    return read;
}

// Another call may have opened the same file meanwhile.
void Player::takeRead(Read read, QObject* context, const Opened& opened) {
    if (!read.error.empty())
        tell(QString::fromStdString(read.error));
    const auto isOpen = [&](const auto& document) {
        return document->id() == read.document || document->document().file() == read.file;
    };
    const auto found = std::ranges::find_if(documents_, isOpen);
    const bool isClosed = found == documents_.end() && read.document != 0;
    if (isClosed) {
        open(read.file, context, opened);
        return;
    }
    OpenDocument* document = nullptr;
    if (found != documents_.end())
        activate(document = found->get());
    else if (read.files)
        document = add(Document(read.file, std::move(*read.files)));
    opened(document);
}

void Player::activate(OpenDocument* document) {
    if (document == active_)
        return;
    active_ = document;
    emit activeChanged();
    publish();
}

void Player::close(OpenDocument* document, UnsavedWork unsaved) {
    const auto found = std::ranges::find(documents_, document, &std::unique_ptr<OpenDocument>::get);
    if (found == documents_.end())
        return;
    emit documentClosing(document);
    unsaved == UnsavedWork::isKept ? document->keepDraft() : document->discardDraft();
    const auto index = found - documents_.begin();
    const std::unique_ptr<OpenDocument> closed = std::move(*found); // after it is not active
    documents_.erase(found);
    if (active_ != document)
        return;
    const auto next = std::min<std::ptrdiff_t>(index, std::ssize(documents_) - 1);
    activate(next < 0 ? nullptr : documents_[static_cast<std::size_t>(next)].get());
}

void Player::setPictureSize(const PixelSize& size) {
    if (size == pictureSize_ || size.width < 1 || size.height < 1)
        return;
    pictureSize_ = size;
    publish();
}

void Player::setMouse(std::optional<std::array<float, 2>> mouse) {
    mouse_ = mouse;
    publish();
}

void Player::setDivisor(std::optional<int> divisor) {
    divisor_ = divisor;
    publish();
}

void Player::setLongestFrame(double seconds) {
    longestFrame_ = seconds;
    userSettings_.set(QLatin1String(longestFrameKey), longestFrame_);
    publish();
}

void Player::setLevels(std::shared_ptr<const LiveLevels> levels, bool hearsOwnSound) {
    levels_ = std::move(levels);
    hearsOwnSound_ = hearsOwnSound;
    publish();
}

void Player::setReplay(std::optional<Replay> replay, const Transport& clock) {
    replay_ = std::move(replay);
    replayClock_ = clock;
    publish();
}

void Player::restartPicture() {
    ++restart_;
    publish();
}

// All documents are compiled again, for the new device.
void Player::useDevice() {
    news_ = {};
    for (const auto& document : documents_) {
        document->forgetProgram();
        if (device_.device())
            document->compileNow();
    }
    publish();
    emit deviceChanged();
    emit newsArrived();
}

// A program with which the device is lost again soon is not drawn any more.
void Player::noteLoss() {
    if (active_ == nullptr)
        return;
    const double now = currentMediaTime();
    const bool isAgain = loss_ && loss_->document == active_->id() &&
                         loss_->revision == active_->programRevision() &&
                         now - loss_->time < lossInterval;
    loss_ = Loss{active_->id(), active_->programRevision(), now, isAgain};
}

bool Player::isRefused(const OpenDocument& document) const {
    return loss_ && loss_->isRefused && loss_->document == document.id() &&
           loss_->revision == document.programRevision();
}

void Player::compile(OpenDocument* document) {
    compiler_->compile({.document = document->id(),
                        .revision = document->document().revision(),
                        .episode = document->document().episode(),
                        .device = device_.device()});
    if (document != active_)
        return;
    compilingSince_ = currentMediaTime();
    publish();
}

void Player::take(CompileResult result) {
    const auto found =
        std::ranges::find(documents_, result.document, [](const auto& one) { return one->id(); });
    if (found != documents_.end() && found->get() == active_)
        compilingSince_.reset();
    if (found != documents_.end() && result.device == device_.device())
        (*found)->accept(std::move(result));
}

void Player::hear(const LiveNews& news) {
    news_ = news;
    emit newsArrived();
    if (news.isDeviceLost && device() != nullptr && device()->isLost()) {
        noteLoss();
        device_.reopen();
    }
}

void Player::publish() {
    auto record = std::make_shared<LiveRecord>();
    record->device = device_.device();
    record->size = pictureSize_;
    record->mouse = mouse_;
    record->divisor = divisor_;
    record->longestFrame = longestFrame_;
    record->compilesAt = compilingSince_;
    record->levels = levels_;
    record->hearsOwnSound = hearsOwnSound_;
    if (active_ != nullptr) {
        if (!compilingSince_)
            record->compilesAt = active_->compilesAt();
        record->document = active_->id();
        record->program = isRefused(*active_) ? nullptr : active_->program();
        record->revision = active_->programRevision();
        record->transport = active_->transport();
        const Settings settings = active_->playedSettings();
        record->settings = std::make_shared<const Settings>(
            record->program ? settings.fitted(record->program->params()) : settings);
        for (const AddToRecord& add : added_)
            add(*active_, *record);
    }
    record->restart = restart_;
    if (replay_) {
        record->replay = replay_->performance;
        record->replayedInputs = replay_->inputs;
        record->transport = replayClock_;
    }
    picture_->show(record);
    emit published(record);
}

void Player::keepDrafts() {
    for (const auto& document : documents_)
        document->keepDraft();
}

void Player::keepDraftsNow() {
    keepDrafts();
    drafts_.sync([] {});
}

// While somebody types without a pause, too.
void Player::keepSoon() {
    if (!autosave_.isActive())
        autosave_.start();
}

// While the process is stopped (SIGSTOP, a virtual machine that is paused), the clock of playing
// stops too, as it does while the machine sleeps.
void Player::skipStop() {
    const double now = currentMediaTime();
    const double passed = now - std::exchange(ticked_, now);
    if (passed < shortestStop)
        return;
    for (const auto& document : documents_)
        document->skipStop(passed);
    emit resumed(passed);
}

// A file system may take long to answer.
void Player::lookAtFiles() {
    std::vector<LookedAt> files;
    for (const auto& document : documents_)
        if (const auto& file = document->document().file())
            files.push_back({document->id(), *file, document->document().stamp()});
    if (files.empty() || std::exchange(isLooking_, true))
        return;
    files_.async([this, files]() mutable {
        for (LookedAt& one : files)
            one.now = FileWatcher::stamp(one.file);
        QMetaObject::invokeMethod(
            this, [this, files] { takeStamps(files); }, Qt::QueuedConnection);
    });
}

// Ignores the files of documents that were read or saved in the meantime.
void Player::takeStamps(const std::vector<LookedAt>& files) {
    isLooking_ = false;
    for (const LookedAt& one : files) {
        const auto found = std::ranges::find(documents_, one.document,
                                             [](const auto& document) { return document->id(); });
        if (found != documents_.end() && (*found)->document().file() == one.file &&
            (*found)->document().stamp() == one.known)
            (*found)->lookAtFile(one.now);
    }
}

} // namespace tarnwick::player
