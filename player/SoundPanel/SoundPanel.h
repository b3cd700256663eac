// The dock of the sound: what is heard, and the sound that episodes react to with its levels.
#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QSpinBox;

namespace tarnwick::player {

class SoundControls;

class SoundPanel : public QWidget {
    Q_OBJECT

  public:
    explicit SoundPanel(SoundControls& sound, QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void fillInputs();
    void takeInput(int index);
    void show();

    SoundControls& sound_;
    QComboBox* input_;
    QLabel* file_;
    QCheckBox* hearsFile_;
    QSpinBox* delay_;
};

} // namespace tarnwick::player
