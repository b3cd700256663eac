// Exports: the actions that begin them, the queue, and the question at the end.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Exports/ExportQueue.h"

#include <QMainWindow>

namespace tarnwick::player {

class QueuePanel;
class SnapshotActions;

class ExportFeature : public QObject {
    Q_OBJECT

  public:
    ExportFeature(Player& player, QMainWindow& window, Actions& actions);

    QWidget* panel() const; // the list of exports, for a dock
    ExportQueue& queue() { return queue_; }

  protected:
    // Asks whether the window may be closed while exports run, before other questions.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void exportMovie();
    void exportWalkthrough();
    void exportPackage();
    void showPanel();
    void tellEnd(int id);
    bool mayQuit();

    Player& player_;
    QMainWindow& window_;
    ExportQueue queue_;
    QueuePanel* panel_;
};

} // namespace tarnwick::player
