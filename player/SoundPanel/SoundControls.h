// The state of the sound in the window: volume, delay, and the sound that episodes react to.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/App/Player.h"
#include "player/Sound/LiveSound.h"
#include "player/SoundPanel/RecordSound.h"

#include <QObject>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>

class QWidget;

namespace tarnwick::player {

// Plays the records of the player. On the thread of the windows.
class SoundControls : public QObject {
    Q_OBJECT

  public:
    SoundControls(Player& player, QWidget& window);
    ~SoundControls() override;

    static constexpr int longestDelay = 1000; // milliseconds, either way

    // Kept in the user's settings, as is the delay.
    const SoundVolume& volume() const { return volume_; }
    void setVolume(const SoundVolume& volume);
    void setMuted(bool isMuted);
    void addVolume(float change);        // sound that is made louder is no longer muted
    int delay() const { return delay_; } // milliseconds, LiveSound::setDelay
    void setDelay(int milliseconds);

    const SoundInput& input() const { return input_; }
    void setInput(const SoundInput& input);
    // Plays the sound file of a replay (empty: none) instead of the input; a null performance ends
    // that. The input and the volume are not changed.
    void setReplayed(const std::shared_ptr<const Performance>& performance, const std::string& file,
                     bool isPlayed);
    // Asks for a file and takes it as the input.
    void chooseFile();

    SoundFigures figures() const { return sound_->figures(); }
    const std::shared_ptr<LiveLevels>& levels() const { return sound_->levels(); }
    // The names of the inputs that the system has. devicesFound() is emitted for newer ones.
    const QStringList& devices() const { return devices_; }
    // Looks for them in the background.
    void findDevices();

  signals:
    void volumeChanged(); // or the delay
    void inputChanged();
    void devicesFound();

  private:
    void load();
    void keep();
    void showInput();
    void showVolume();

    Player& player_;
    QWidget& window_;
    SoundVolume volume_;
    int delay_ = 0;
    SoundInput input_;
    struct Replayed {
        std::shared_ptr<const Performance> performance;
        std::string file;
        bool isPlayed = false;
    };
    std::optional<Replayed> replayed_; // absent: no replay
    QStringList devices_;
    RecordSound heard_;
    std::unique_ptr<LiveSound> sound_;
    DispatchQueue finding_;
};

} // namespace tarnwick::player
