#include "player/SoundPanel/SoundControls.h"

#include "TarnwickPlatform/Sound/SoundCapture.h"

#include <QFileDialog>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr const char* volumeKey = "sound/volume";
constexpr const char* mutedKey = "sound/muted";
constexpr const char* hearsFileKey = "sound/hearsFile";
constexpr const char* delayKey = "sound/delay";

} // namespace

SoundControls::SoundControls(Player& player, QWidget& window)
    : QObject(&window), player_(player), window_(window) {
    const auto onWindows = [this](auto run) {
        return [this, run](const auto&... values) {
            QMetaObject::invokeMethod(
                this, [run, values...] { run(values...); }, Qt::QueuedConnection);
        };
    };
    sound_ = std::make_unique<LiveSound>(LiveSound::Listener{
        .tell = onWindows([this](const std::string& sentence) {
            player_.tell(QString::fromStdString(sentence));
        }),
        .pausedLevelsCame = onWindows([this] {
            player_.setLevels(sound_->levels(), input_.kind == SoundInput::Kind::own);
        })});
    load();
    connect(&player_, &Player::published, &heard_, &RecordSound::show);
    connect(&heard_, &RecordSound::changed, this,
            [this] { sound_->show(heard_.sound(), heard_.transport()); });
    player_.setLevels(sound_->levels(), true);
}

SoundControls::~SoundControls() {
    player_.disconnect(this);
    player_.disconnect(&heard_);
}

void SoundControls::setVolume(const SoundVolume& volume) {
    if (volume == volume_)
        return;
    const bool hadFile = volume_.hasFile;
    volume_ = volume;
    showVolume();
    if (hadFile != volume.hasFile)
        player_.publish(); // a recording notes it
    keep();
    emit volumeChanged();
}

void SoundControls::setMuted(bool isMuted) {
    SoundVolume changed = volume_;
    changed.isMuted = isMuted;
    setVolume(changed);
}

void SoundControls::addVolume(float change) {
    SoundVolume changed = volume_;
    changed.all = std::clamp(volume_.all + change, 0.0f, 1.0f);
    changed.isMuted = volume_.isMuted && change < 0;
    setVolume(changed);
}

void SoundControls::setDelay(int milliseconds) {
    if (milliseconds == delay_)
        return;
    delay_ = milliseconds;
    sound_->setDelay(milliseconds / 1000.0);
    keep();
    emit volumeChanged();
}

void SoundControls::load() {
    const UserSettings& kept = player_.userSettings();
    const float all = kept.value(QLatin1String(volumeKey), 1.0f).toFloat();
    volume_ = {.all = all >= 0 && all <= 1 ? all : 1,
               .isMuted = kept.value(QLatin1String(mutedKey), false).toBool(),
               .hasFile = kept.value(QLatin1String(hearsFileKey), true).toBool()};
    delay_ =
        std::clamp(kept.value(QLatin1String(delayKey), 0).toInt(), -longestDelay, longestDelay);
    showVolume();
    sound_->setDelay(delay_ / 1000.0);
}

void SoundControls::showVolume() {
    SoundVolume shown = volume_;
    if (replayed_)
        shown.hasFile = replayed_->isPlayed;
    sound_->setVolume(shown);
}

void SoundControls::keep() {
    UserSettings& kept = player_.userSettings();
    kept.set(QLatin1String(volumeKey), volume_.all);
    kept.set(QLatin1String(mutedKey), volume_.isMuted);
    kept.set(QLatin1String(hearsFileKey), volume_.hasFile);
    kept.set(QLatin1String(delayKey), delay_);
}

void SoundControls::setInput(const SoundInput& input) {
    if (input != input_) {
        input_ = input;
        showInput();
    }
    emit inputChanged();
}

void SoundControls::showInput() {
    if (!replayed_)
        sound_->setInput(input_);
    else if (replayed_->file.empty())
        sound_->setInput({});
    else
        sound_->setInput({.kind = SoundInput::Kind::file, .name = replayed_->file},
                         replayed_->performance);
    player_.setLevels(sound_->levels(), input_.kind == SoundInput::Kind::own);
}

void SoundControls::setReplayed(const std::shared_ptr<const Performance>& performance,
                                const std::string& file, bool isPlayed) {
    if (performance)
        replayed_ = Replayed{performance, file, isPlayed};
    else
        replayed_.reset();
    showInput();
    showVolume();
}

void SoundControls::chooseFile() {
    const QString file = QFileDialog::getOpenFileName(
        &window_, tr("Sound file"), QString(),
        tr("Sounds and movies (*.wav *.flac *.mp3 *.ogg *.opus *.m4a *.aac *.mp4 *.mov *.mkv "
           "*.webm);;All files (*)"));
    if (file.isEmpty())
        emit inputChanged(); // the menu shows the old one again
    else
        setInput({.kind = SoundInput::Kind::file, .name = file.toStdString()});
}

void SoundControls::findDevices() {
    finding_.async([this] {
        QStringList found;
        for (const std::string& name : SoundCapture::devices())
            found.append(QString::fromStdString(name));
        QMetaObject::invokeMethod(
            this,
            [this, found] {
                if (devices_ == found)
                    return;
                devices_ = found;
                emit devicesFound();
            },
            Qt::QueuedConnection);
    });
}

} // namespace tarnwick::player
