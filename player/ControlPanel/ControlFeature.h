// Being played: the panel of OSC, MIDI and bindings, and its actions.
#pragma once

#include "player/Actions/Actions.h"
#include "player/ControlPanel/LiveControl.h"

#include <QMainWindow>

class QAction;
class QDockWidget;
class QMenu;
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
    void addToMenu(const ControlTarget& target, QMenu* menu);
    void showHeld(const Player& player);

    QMainWindow& window_;
    LiveControl* control_;
    QDockWidget* dock_;
    QTabWidget* pages_;
    BindingsView* bindings_;
    QWidget *connections_, *monitor_;
    QAction* release_ = nullptr;
};

} // namespace tarnwick::player
