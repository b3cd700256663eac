// Play, pause, seek, step, speed and loop of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QStyle>
#include <QWidget>

class QDoubleSpinBox;
class QLabel;
class QSlider;
class QToolButton;

namespace tarnwick::player {

class TransportBar : public QWidget {
    Q_OBJECT

  public:
    explicit TransportBar(Player& player, QWidget* parent = nullptr);

  public slots:
    void togglePlaying();
    void stepForward();
    void stepBack();
    void restart();

  private:
    void follow();
    void showState();
    double length() const; // seconds that the slider covers
    QToolButton* button(QStyle::StandardPixmap icon, const QString& name,
                        void (TransportBar::*slot)());
    void change(const Transport& transport);

    Player& player_;
    OpenDocument* document_ = nullptr;
    QToolButton* play_;
    QToolButton* loop_;
    QSlider* position_;
    QLabel* time_;
    QDoubleSpinBox* speed_;
};

} // namespace tarnwick::player
