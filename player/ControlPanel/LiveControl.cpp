#include "player/ControlPanel/LiveControl.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int frameTime = 16;     // milliseconds between two takes
constexpr int watchInterval = 50; // milliseconds

bool isMIDI(const Binding& binding) {
    return std::holds_alternative<MIDIControl>(binding.source);
}

} // namespace

LiveControl::LiveControl(Player& player, std::filesystem::path file, QObject* parent)
    : QObject(parent), player_(player), file_(std::move(file)), mail_([this] {
          QMetaObject::invokeMethod(this, &LiveControl::schedule, Qt::QueuedConnection);
      }) {
    frame_.setSingleShot(true);
    frame_.setTimerType(Qt::PreciseTimer);
    connect(&frame_, &QTimer::timeout, this, &LiveControl::takeAll);
    watching_.setInterval(watchInterval);
    connect(&watching_, &QTimer::timeout, this, &LiveControl::finishLearning);
    connect(&player_, &Player::activeChanged, this, &LiveControl::follow);
    connect(&player_, &Player::newsArrived, this, [this] {
        if (document_ != nullptr && !document_->document().settings().keys.isEmpty())
            sendChanges();
    });
    follow();
    ControlFile read = readControlFile(file_);
    settings_ = std::move(read.settings);
    // After the window listens to what the player tells.
    QMetaObject::invokeMethod(
        this, [this, remark = QString::fromStdString(read.remark)] { start(remark); },
        Qt::QueuedConnection);
    router_.setBindings(settings_.bindings);
    router_.setPickup(settings_.midi.hasPickup);
}

// First the threads, whose calls use the rest.
LiveControl::~LiveControl() {
    midiInput_.reset();
    receiver_.reset();
    sender_.reset();
}

void LiveControl::start(const QString& remark) {
    if (!remark.isEmpty())
        player_.tell(remark);
    if (settings_.input.isOn && !receiver_)
        openInput(settings_.input);
    openOutput();
    if (std::ranges::any_of(settings_.bindings, isMIDI))
        startMIDI();
    emit changed();
}

void LiveControl::save() {
    files_.async([this, file = file_, settings = settings_] {
        try {
            writeControlFile(file, settings);
        } catch (const ControlFileError& error) {
            QMetaObject::invokeMethod(this, [this, sentence = QString::fromStdString(
                                                       error.what())] { player_.tell(sentence); });
        }
    });
}

void LiveControl::setBindings(std::vector<Binding> bindings) {
    if (bindings == settings_.bindings)
        return;
    settings_.bindings = std::move(bindings);
    router_.setBindings(settings_.bindings);
    if (std::ranges::any_of(settings_.bindings, isMIDI))
        startMIDI();
    save();
    emit changed();
}

void LiveControl::setInput(const OSCInput& input) {
    if (input == input_)
        return;
    openInput(input);
    if (input_ == input) {
        settings_.input = input;
        save();
    }
}

void LiveControl::listen(std::uint16_t port) {
    openInput({.isOn = true, .port = port, .address = settings_.input.address});
}

void LiveControl::openInput(const OSCInput& input) {
    receiver_.reset();
    input_ = input;
    if (input.isOn) {
        try {
            receiver_ =
                OSCReceiver::make(input.address, input.port, [this](ControlArrival arrival) {
                    mail_.post(std::move(arrival));
                });
        } catch (const OSCPortError& error) {
            input_.isOn = false;
            player_.tell(QString::fromStdString(error.what()));
        }
    }
    emit changed();
}

void LiveControl::setOutput(const OSCOutput& output) {
    if (output == settings_.output)
        return;
    settings_.output = output;
    openOutput();
    save();
    emit changed();
}

void LiveControl::openOutput() {
    sender_.reset();
    peer_.forget();
    if (!settings_.output.isOn)
        return;
    sender_ = std::make_unique<OSCSender>(
        settings_.output.host, settings_.output.port, [this](const std::string& sentence) {
            QMetaObject::invokeMethod(
                this, [this, told = QString::fromStdString(sentence)] { player_.tell(told); },
                Qt::QueuedConnection);
        });
    sendChanges();
}

void LiveControl::setMIDI(const MIDIChoice& choice) {
    if (choice == settings_.midi)
        return;
    settings_.midi = choice;
    router_.setPickup(choice.hasPickup);
    if (midiInput_)
        midiInput_->ignore(choice.ignored);
    save();
    emit changed();
}

void LiveControl::startMIDI() {
    if (midiInput_)
        return;
    midiInput_ = std::make_unique<MIDIInput>(MIDIInput::Calls{
        .system = systemMIDIPorts,
        .arrived = [this](ControlArrival arrival) { mail_.post(std::move(arrival)); },
        .changed =
            [this](const MIDIState& state) {
                QMetaObject::invokeMethod(
                    this,
                    [this, state] {
                        midiState_ = state;
                        emit changed();
                    },
                    Qt::QueuedConnection);
            }});
    midiInput_->ignore(settings_.midi.ignored);
}

void LiveControl::learn(const ControlTarget& target, bool onlyHere) {
    startMIDI();
    learner_.emplace(target, onlyHere && document_ != nullptr ? document_->document().title() : "");
    emit changed();
}

void LiveControl::stopLearning() {
    if (!learner_)
        return;
    learner_.reset();
    emit changed();
}

void LiveControl::setWritesKeys(bool isOn) {
    moves_.setWritesKeys(isOn);
    if (isOn && document_ != nullptr)
        document_->releaseHeld(); // the written keys are played
}

void LiveControl::follow() {
    moves_.endGesture();
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    peer_.forget();
    if (document_ == nullptr)
        return;
    connect(document_, &OpenDocument::settingsChanged, this, &LiveControl::sendChanges);
    sendChanges();
}

void LiveControl::sendChanges() {
    if (!sender_ || document_ == nullptr)
        return;
    const PlayedEpisode episode = played(document_);
    auto messages = peer_.changes(episode.params, episode.values, currentMediaTime());
    if (!messages.empty())
        sender_->send(std::move(messages));
}

void LiveControl::schedule() {
    if (frame_.isActive())
        return;
    const qint64 since = lastTake_.isValid() ? lastTake_.elapsed() : frameTime;
    frame_.start(static_cast<int>(std::max<qint64>(frameTime - since, 0)));
}

PlayedEpisode LiveControl::played(const OpenDocument* document) const {
    if (document == nullptr)
        return {};
    PlayedEpisode episode{.title = document->document().title(),
                          .params = document->document().episode()->params(),
                          .values = {}};
    for (const ParamDecl& param : episode.params)
        episode.values[param.name] = document->valueNow(param);
    return episode;
}

void LiveControl::takeAll() {
    lastTake_.restart();
    PlayedEpisode episode = played(document_);
    ParamValues values;
    for (ControlArrival& arrival : mail_.take()) {
        std::vector<ControlMove> moves;
        if (learner_)
            learner_->add(arrival);
        else
            moves = route(arrival, episode);
        for (const ControlMove& move : moves) {
            const auto* parameter = std::get_if<ParameterMove>(&move.change);
            if (parameter == nullptr)
                apply(*document_, std::get<TransportMove>(move.change));
            else if (!move.waitsForPickup)
                episode.values[parameter->name] = values[parameter->name] = parameter->value;
        }
        monitor_.add({std::move(arrival), std::move(moves)});
    }
    if (!values.empty())
        moves_.apply(*document_, values);
    if (!mail_.isEmpty())
        schedule();
    finishLearning();
    emit monitorChanged();
}

void LiveControl::finishLearning() {
    watching_.stop();
    if (!learner_)
        return;
    auto learned = learner_->learned(currentMediaTime());
    if (!learned) {
        if (learner_->isWatching())
            watching_.start();
        return;
    }
    learner_.reset();
    std::vector<Binding> bindings = settings_.bindings;
    addLearned(bindings, *std::move(learned));
    const int index = static_cast<int>(bindings.size()) - 1;
    setBindings(std::move(bindings));
    emit changed();
    emit this->learned(index);
}

// The moves of a message without those that only answer our own messages.
std::vector<ControlMove> LiveControl::route(const ControlArrival& arrival,
                                            const PlayedEpisode& episode) {
    if (document_ == nullptr)
        return {};
    std::vector<ControlMove> moves = router_.route(arrival, episode);
    if (!sender_ || !std::holds_alternative<OSCControl>(arrival.source) ||
        !sender_->isHost(arrival.from))
        return moves;
    std::erase_if(moves, [&](const ControlMove& move) {
        const auto* parameter = std::get_if<ParameterMove>(&move.change);
        if (parameter == nullptr)
            return false;
        const auto param = std::ranges::find(episode.params, parameter->name, &ParamDecl::name);
        const float position = positionOf(*param, parameter->value);
        const bool isEcho = peer_.isEcho(parameter->name, position, arrival.time);
        if (!isEcho)
            peer_.knows(parameter->name, position);
        return isEcho;
    });
    return moves;
}

} // namespace tarnwick::player
