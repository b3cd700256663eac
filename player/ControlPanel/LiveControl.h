// Plays the active episode from outside: OSC and MIDI in, OSC out.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/App/Player.h"
#include "player/Control/ControlMail.h"
#include "player/Control/ControlMonitor.h"
#include "player/Control/ControlSettings.h"
#include "player/Control/Learner.h"
#include "player/Control/MIDIInput.h"
#include "player/Control/OSCPeer.h"
#include "player/Control/OSCReceiver.h"
#include "player/Control/OSCSender.h"
#include "player/ControlPanel/DocumentMoves.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <optional>

namespace tarnwick::player {

// On the thread of the windows. What arrives moves the active episode at most once a frame, and
// all moves until a pause are one change that can be undone.
class LiveControl : public QObject {
    Q_OBJECT

  public:
    // Reads the settings from `file` and writes each change to it.
    LiveControl(Player& player, std::filesystem::path file, QObject* parent = nullptr);
    ~LiveControl() override;

    const std::vector<Binding>& bindings() const { return settings_.bindings; }
    void setBindings(std::vector<Binding> bindings);

    // The input that is used; not on if its port cannot be opened.
    const OSCInput& input() const { return input_; }
    void setInput(const OSCInput& input);
    // Listens on a port until the player ends; the settings are not changed.
    void listen(std::uint16_t port);

    const OSCOutput& output() const { return settings_.output; }
    void setOutput(const OSCOutput& output);

    const MIDIChoice& midi() const { return settings_.midi; }
    void setMIDI(const MIDIChoice& choice);
    // Opens the MIDI ports. Otherwise this waits for the first binding of MIDI.
    void startMIDI();
    const MIDIState* midiState() const { return midiState_ ? &*midiState_ : nullptr; } // null: none

    // The next control that is moved is bound to the target (Learner); `onlyHere`: for the active
    // episode.
    void learn(const ControlTarget& target, bool onlyHere);
    void stopLearning();
    const ControlTarget* learning() const { return learner_ ? &learner_->target() : nullptr; }

    void setWritesKeys(bool isOn); // DocumentMoves::setWritesKeys

    ControlMonitor& monitor() { return monitor_; }
    // What other threads receive; tests post to it too.
    ControlMail& mail() { return mail_; }

  signals:
    void changed();          // bindings, input, output, MIDI or learning
    void learned(int index); // of the new binding
    void monitorChanged();

  private:
    void start(const QString& remark);
    void save();
    void openInput(const OSCInput& input);
    void openOutput();
    void follow();
    void sendChanges();

    void schedule();
    void takeAll();
    PlayedEpisode played(const OpenDocument* document) const;
    void finishLearning(); // if the control is known
    std::vector<ControlMove> route(const ControlArrival& arrival, const PlayedEpisode& episode);

    Player& player_;
    std::filesystem::path file_;
    ControlSettings settings_;
    OSCInput input_;
    std::optional<MIDIState> midiState_;
    std::optional<Learner> learner_; // absent: nothing is learned
    QTimer watching_;                // while it watches a control
    DocumentMoves moves_;
    ControlRouter router_;
    ControlMonitor monitor_;
    OSCPeer peer_;
    QPointer<OpenDocument> document_; // the one that is followed
    QTimer frame_;                    // until the next take
    QElapsedTimer lastTake_;
    DispatchQueue files_;
    ControlMail mail_;
    std::unique_ptr<OSCSender> sender_; // after all that their threads use
    std::unique_ptr<OSCReceiver> receiver_;
    std::unique_ptr<MIDIInput> midiInput_;
};

} // namespace tarnwick::player
