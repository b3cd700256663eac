// Performances in the window: the actions that record and replay, and the list.
#pragma once

#include "player/Actions/Actions.h"
#include "player/Performances/Performer.h"

#include <QMainWindow>

namespace tarnwick::player {

class PerformancesPanel;

class PerformanceFeature : public QObject {
    Q_OBJECT

  public:
    PerformanceFeature(Player& player, QMainWindow& window, Actions& actions);

    QWidget* panel() const; // for a dock
    Performer& performer() { return performer_; }

  private:
    void showState();

    Performer performer_;
    PerformancesPanel* panel_;
    QAction* record_;
    QAction* replay_;
};

} // namespace tarnwick::player
