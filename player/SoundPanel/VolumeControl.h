// Mute and volume in one row.
#pragma once

#include <QWidget>

class QSlider;
class QToolButton;

namespace tarnwick::player {

class SoundControls;

class VolumeControl : public QWidget {
    Q_OBJECT

  public:
    explicit VolumeControl(SoundControls& sound, QWidget* parent = nullptr);

  private:
    void show();

    SoundControls& sound_;
    QToolButton* mute_;
    QSlider* volume_;
};

} // namespace tarnwick::player
