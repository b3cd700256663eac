#include "player/Performances/Performer.h"

#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int flushInterval = 2000; // milliseconds between two writings of a recording
constexpr int tickInterval = 33;    // milliseconds between two moments that the controls show

constexpr const char* editedRemark =
    "The text was edited during the performance; it is replayed with one text.";

} // namespace

Performer::Performer(Player& player, DocumentInputsOf inputsOf, QObject* parent)
    : QObject(parent), player_(player), inputsOf_(std::move(inputsOf)) {
    connect(&player_, &Player::published, this,
            [this](const std::shared_ptr<const LiveRecord>& record) {
                hear(*record, currentMediaTime());
            });
    connect(&player_, &Player::activeChanged, this, [this] {
        stopRecording();
        stopReplay();
    });
    // The episodes of its channels were compiled for the device.
    connect(&player_, &Player::deviceChanged, this, &Performer::stopReplay);
    connect(&player_, &Player::resumed, this, [this](double seconds) {
        Transport clock = clock_;
        clock.since += seconds;
        setClock(clock);
    });
    connect(&flush_, &QTimer::timeout, this, &Performer::keepNew);
    connect(&tick_, &QTimer::timeout, this, [this] {
        if (isReplaying())
            showMoment();
        else if (isRecording() && recorder_->isFull(currentMediaTime()))
            stopRecording();
        else
            hearLevels();
        emit moved();
    });
    flush_.setInterval(flushInterval);
    tick_.setInterval(tickInterval);
    // The process may end without destructors.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        stopRecording();
        queue_.sync({});
    });
    refresh();
}

Performer::~Performer() {
    stopRecording();
}

// Runs `work` on the queue, then `then` with its result on this thread.
template <typename Work, typename Then> void Performer::later(Work work, Then then) {
    queue_.async([guard = QPointer<Performer>(this), work = std::move(work),
                  then = std::move(then)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, result, then = std::move(then)]() mutable {
                if (guard)
                    then(std::move(*result));
            },
            Qt::QueuedConnection);
    });
}

double Performer::seconds() const {
    const double now = currentMediaTime();
    if (isRecording())
        return recorder_->seconds(now);
    return isReplaying() ? std::min(clock_.timeAt(now), length()) : 0;
}

double Performer::length() const {
    return isReplaying() ? cursor_->performance().length : 0;
}

void Performer::record() {
    stopReplay();
    if (isRecording() || player_.active() == nullptr)
        return;
    if (!player_.active()->program()) {
        player_.tell(tr("The episode does not compile yet; it cannot be performed."));
        return;
    }
    isBeginning_ = true;
    player_.restartPicture();
}

void Performer::hear(const LiveRecord& record, double host) {
    if (std::exchange(isBeginning_, false)) {
        begin(record, host);
    } else if (isRecording() && record.settings && !record.replay) {
        hearLevels();
        recorder_->hear(stateOf(record), host);
    }
}

// With the inputs of the document that is recorded.
PerformedState Performer::stateOf(const LiveRecord& record) {
    PerformedState state{
        .settings = *record.settings, .transport = record.transport, .pointer = record.mouse};
    if (document_ == nullptr)
        return state;
    DocumentInputs inputs = inputsOf_(*document_);
    for (const std::string& remark : inputs.remarks)
        remarks_.insert(remark);
    state.inputs = std::move(inputs.files);
    hearDevice(record.program && record.program->usesInputs() ? inputs.device : nullptr);
    state.heard = newestLevels();
    return state;
}

// Levels of the device are kept while it is the sound input of a recording.
void Performer::hearDevice(std::shared_ptr<LiveLevels> device) {
    if (device == device_)
        return;
    if (device_)
        device_->keep(false);
    device_ = std::move(device);
    if (device_)
        device_->keep(true);
}

HeardLevels Performer::newestLevels() const {
    if (!device_)
        return {};
    const auto newest = device_->newest();
    return {std::make_shared<const LevelCodes>(
        newest ? LevelCodes::of(newest->bands, newest->spectrum) : LevelCodes())};
}

void Performer::hearLevels() {
    if (!isRecording() || !device_)
        return;
    for (const LiveLevels::Kept& kept : device_->takeKept())
        recorder_->hearLevels({std::make_shared<const LevelCodes>(
                                  LevelCodes::of(kept.levels->bands, kept.levels->spectrum))},
                              kept.host);
}

void Performer::begin(const LiveRecord& record, double host) {
    if (!record.program) {
        player_.tell(tr("The episode is not drawn; it cannot be performed."));
        return;
    }
    document_ = player_.active();
    remarks_.clear();
    const Document& document = document_->document();
    revision_ = document.revision();
    recorder_.emplace(Performance::markOf(document.title(), document.text()), stateOf(record),
                      host);
    keptChanges_ = 0;
    keeping_ = std::make_shared<Keeping>();
    keepWith([title = document.title(), beginning = recorder_->performance()](Keeping& keeping) {
        const std::filesystem::path folder = performancesFolder();
        keeping.file = std::make_unique<PerformanceFile>(folder, title);
        keeping.file->append(keptIn(folder, beginning).encodedBeginning());
    });
    flush_.start();
    tick_.start();
    emit changed();
}

// Works with the file on the queue. The first error is told; nothing more is written then.
void Performer::keepWith(std::function<void(Keeping&)> work) {
    later(
        [keeping = keeping_, work = std::move(work)]() -> std::string {
            if (keeping->hasFailed)
                return {};
            try {
                work(*keeping);
                return {};
            } catch (const PerformanceFileError& error) {
                keeping->hasFailed = true;
                return error.what();
            }
        },
        [this](const std::string& error) {
            if (!error.empty())
                player_.tell(tr("The performance is not recorded any more. %1")
                                 .arg(QString::fromStdString(error)));
        });
}

void Performer::keep(const std::string& lines) {
    keepWith([lines](Keeping& keeping) { keeping.file->append(lines); });
}

void Performer::keepNew() {
    hearLevels();
    const auto changes = std::span(recorder_->performance().changes).subspan(keptChanges_);
    if (changes.empty())
        return;
    keptChanges_ += changes.size();
    keepWith([added = std::vector(changes.begin(), changes.end())](Keeping& keeping) {
        try {
            keeping.file->append(
                Performance::encoded(keptIn(keeping.file->path().parent_path(), added)));
        } catch (const DocumentError& error) { // a value that is not finite
            throw PerformanceFileError(error.what());
        }
    });
}

void Performer::noteRemarks() {
    if (document_ == nullptr)
        return;
    for (const std::string& remark : remarks_)
        recorder_->remark(remark);
    if (document_->document().revision() != revision_)
        recorder_->remark(editedRemark);
}

void Performer::stopRecording() {
    isBeginning_ = false;
    if (!isRecording())
        return;
    flush_.stop();
    tick_.stop();
    keepNew();
    hearDevice(nullptr);
    recorder_->end(currentMediaTime());
    noteRemarks();
    keep(recorder_->performance().encodedEnd());
    for (const std::string& remark : recorder_->performance().remarks)
        player_.tell(QString::fromStdString(remark));
    recorder_.reset();
    refresh();
    emit changed();
}

void Performer::refresh() {
    later([] { return keptPerformances(performancesFolder()); },
          [this](std::vector<KeptPerformance> kept) {
              kept_ = std::move(kept);
              emit keptRefreshed();
          });
}

void Performer::save(const std::filesystem::path& from, const std::filesystem::path& to) {
    later(
        [from, to]() -> std::string {
            try {
                copyPerformance(from, to);
                return {};
            } catch (const PerformanceFileError& error) {
                return error.what();
            }
        },
        [this](const std::string& error) {
            if (!error.empty())
                player_.tell(QString::fromStdString(error));
        });
}

void Performer::replayLast() {
    if (kept_.empty())
        player_.tell(tr("There is no performance yet."));
    else
        replay(kept_.front().file);
}

void Performer::replay(const std::filesystem::path& file) {
    stopRecording();
    later([file, device = player_.sharedDevice()] { return load(file, device); },
          [this](const Loaded& loaded) {
              if (loaded.performance)
                  start(loaded);
              else
                  player_.tell(QString::fromStdString(loaded.error));
          });
}

// On the queue.
Performer::Loaded Performer::load(const std::filesystem::path& file,
                                  const std::shared_ptr<gpu::Device>& device) {
    try {
        FoundInputs found = foundInputs(readPerformance(file), file.parent_path());
        ReplayEpisodes episodes = readReplayEpisodes(found.performance, device);
        std::ranges::copy(episodes.sentences, std::back_inserter(found.sentences));
        return {.performance = std::make_shared<const Performance>(std::move(found.performance)),
                .sentences = std::move(found.sentences),
                .episodes = std::move(episodes)};
    } catch (const PerformanceFileError& error) {
        return {.error = error.what()};
    }
}

void Performer::start(const Loaded& loaded) {
    const auto& performance = loaded.performance;
    stopReplay();
    if (player_.active() == nullptr || !player_.active()->program()) {
        player_.tell(tr("There is no episode to replay it with."));
        return;
    }
    document_ = player_.active();
    const Document& document = document_->document();
    if (Performance::markOf("", document.text()).sha256 != performance->episode.sha256)
        player_.tell(tr("Another text was performed; the picture may differ."));
    for (const std::string& remark : performance->remarks)
        player_.tell(QString::fromStdString(remark));
    for (const std::string& sentence : loaded.sentences)
        player_.tell(QString::fromStdString(sentence));
    const auto fitted =
        std::make_shared<const Performance>(performance->fitted(document_->program()->params()));
    cursor_.emplace(fitted);
    replayed_ =
        replayedInputsOf(*fitted, loaded.episodes,
                         [performer = QPointer<Performer>(this)](const std::string& sentence) {
                             QCoreApplication* program = QCoreApplication::instance();
                             if (program == nullptr)
                                 return; // it has ended
                             QMetaObject::invokeMethod(
                                 program,
                                 [performer, sentence] {
                                     if (performer)
                                         performer->player_.tell(QString::fromStdString(sentence));
                                 },
                                 Qt::QueuedConnection);
                         });
    connect(document_, &OpenDocument::touchedInReplay, this, &Performer::stopReplay);
    clock_ = Transport{}.played(currentMediaTime());
    player_.setReplay(Player::Replay{fitted, replayed_}, clock_);
    tick_.start();
    showMoment();
    emit changed();
}

// The controls follow; at its end the replay is over.
void Performer::showMoment() {
    const double now = currentMediaTime(), time = clock_.timeAt(now);
    if (clock_.isPlaying && time >= length()) {
        stopReplay();
        return;
    }
    PerformedState state = cursor_->at(time);
    ReplayedSound sound{.performance = cursor_->shared()};
    if (const auto input = state.inputs.find(soundInput); input != state.inputs.end()) {
        sound.file = input->second.file;
        sound.isPlayed = input->second.isPlayed;
    }
    showSound(sound);
    if (clock_.isPlaying)
        state.transport.since += now - time;
    else
        state.transport = state.transport.paused(time);
    if (document_ != nullptr)
        document_->showReplayed(std::move(state));
}

void Performer::showSound(const ReplayedSound& sound) {
    if (std::exchange(sound_, sound) != sound)
        emit soundReplayed(sound);
}

void Performer::setClock(const Transport& clock) {
    if (!isReplaying())
        return;
    clock_ = clock;
    player_.setReplay(Player::Replay{cursor_->shared(), replayed_}, clock_);
    showMoment();
    emit moved();
    emit changed();
}

void Performer::stopReplay() {
    if (!isReplaying())
        return;
    cursor_.reset();
    tick_.stop();
    player_.setReplay(std::nullopt);
    replayed_.reset();
    showSound({});
    if (document_ != nullptr) {
        disconnect(document_, &OpenDocument::touchedInReplay, this, nullptr);
        document_->showReplayed(std::nullopt);
    }
    emit changed();
}

} // namespace tarnwick::player
