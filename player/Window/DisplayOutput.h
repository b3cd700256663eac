// The picture alone on a display: which one, and what happens when displays come and go.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>

class QScreen;

namespace tarnwick::player {

class OutputWindow;
class PictureView;

// An output whose display is removed is closed, and shown again when a display of that name comes
// back.
class DisplayOutput : public QObject {
    Q_OBJECT

  public:
    DisplayOutput(Player& player, QMainWindow& window, Actions& actions);
    ~DisplayOutput() override; // the output must not outlive the player

    PictureView* view() const; // null while it is not shown
    void close();

  signals:
    void resized(); // the picture's size changed, or it was shown or closed

  private:
    void addDisplays();
    void listDisplays(QMenu& menu);
    // Shows the picture alone on a display. If it is shown there, closes it.
    void toggle(QScreen& screen);
    void show(QScreen& screen);
    void closeOn(const QScreen& gone);
    void showAgain(QScreen& added);

    Player& player_;
    QMainWindow& window_;
    Actions& actions_;
    OutputWindow* output_ = nullptr; // null while it is not shown
    QString awaited_;                // the display that was removed under the output; empty: none
};

} // namespace tarnwick::player
