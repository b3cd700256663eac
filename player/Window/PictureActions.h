// The picture's actions: its size, its figures, a whole display, snapshots; and its state.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>

namespace tarnwick::player {

class DisplayOutput;
class PictureView;

class PictureActions : public QObject {
    Q_OBJECT

  public:
    // `picture` is the one in the window.
    PictureActions(Player& player, QMainWindow& window, Actions& actions, PictureView& picture);

    void closeOutput();

  private:
    void addScales(Actions& actions);
    void addLongestFrames(Actions& actions); // the user's choices of Player::longestFrame
    void fitPicture();
    void showState();
    QString message() const; // over the picture; empty: none
    QString waiting() const;
    QString status() const;

    Player& player_;
    QMainWindow& window_;
    PictureView& picture_;
    DisplayOutput* output_;
    QTimer settle_; // after the picture was resized
    bool showsFigures_ = false;
};

} // namespace tarnwick::player
