// Being played: the panel of OSC, MIDI and bindings, and its actions.
#pragma once

#include "player/Actions/Actions.h"
#include "player/ControlPanel/LiveControl.h"

#include <QMainWindow>

class QDockWidget;
class QTabWidget;

namespace tarnwick::player {

class BindingsView;

class ControlFeature : public QObject {
    Q_OBJECT

  public:
    // LiveControl and the dock become children of the window.
    ControlFeature(Player& player, QMainWindow& window, Actions& actions);

  private:
    void makeDock(Player& player);
    void addActions(Player& player, Actions& actions);
    void open(QWidget* page);

    QMainWindow& window_;
    LiveControl* control_;
    QDockWidget* dock_;
    QTabWidget* pages_;
    BindingsView* bindings_;
    QWidget *connections_, *monitor_;
};

} // namespace tarnwick::player
