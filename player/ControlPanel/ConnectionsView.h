// Switches and places of the OSC input, the OSC output and the MIDI ports.
#pragma once

#include "player/ControlPanel/LiveControl.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QSpinBox;

namespace tarnwick::player {

class ConnectionsView : public QWidget {
    Q_OBJECT

  public:
    explicit ConnectionsView(LiveControl& control, QWidget* parent = nullptr);

  private:
    QWidget* inputBox();
    QWidget* outputBox();
    QWidget* midiBox();
    void listAddresses();
    void showState();
    void showPorts();
    void setInput();
    void setOutput();
    void setPorts();

    LiveControl& control_;
    bool isShowing_ = false; // the controls follow the settings, not the other way round
    QCheckBox *listens_, *sends_, *pickup_;
    QSpinBox *inputPort_, *outputPort_;
    QComboBox* address_;
    QLineEdit* host_;
    QLabel *inputState_, *midiState_;
    QListWidget* ports_;
};

} // namespace tarnwick::player
