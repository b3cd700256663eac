// Performances in the window: the actions that record and replay, and the list.
#pragma once

#include "player/Actions/Actions.h"
#include "player/Performances/Performer.h"

#include <QMainWindow>
#include <filesystem>

class QLabel;

namespace tarnwick::player {

class PerformancesPanel;

class PerformanceFeature : public QObject {
    Q_OBJECT

  public:
    PerformanceFeature(Player& player, QMainWindow& window, Actions& actions,
                       DocumentInputsOf inputsOf);

    QWidget* panel() const; // for a dock
    Performer& performer() { return performer_; }

  signals:
    // A movie of that file and the active document.
    void exportWanted(const std::filesystem::path& performance);

  private:
    void showState();
    void showSeconds(); // in the status line

    Performer performer_;
    PerformancesPanel* panel_;
    QAction* record_;
    QAction* replay_;
    QLabel* state_;
};

} // namespace tarnwick::player
