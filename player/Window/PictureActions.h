// The picture's actions: its size, its figures, a whole display, snapshots; and its state.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>

class QScreen;

namespace tarnwick::player {

class OutputWindow;
class PictureView;

class PictureActions : public QObject {
    Q_OBJECT

  public:
    // `picture` is the one in the window.
    PictureActions(Player& player, QMainWindow& window, Actions& actions, PictureView& picture);

    void closeOutput();

  private:
    void addScales(Actions& actions);
    void addDisplays(Actions& actions);
    void fitPicture();
    // Shows the picture alone on a display, or ends that.
    void toggleOutput(QScreen* screen);
    void showState();
    QString message() const; // over the picture; empty: none
    QString status() const;

    Player& player_;
    QMainWindow& window_;
    PictureView& picture_;
    OutputWindow* output_ = nullptr; // null while it is not shown
    QTimer settle_;                  // after the picture was resized
    bool showsFigures_ = false;
};

} // namespace tarnwick::player
