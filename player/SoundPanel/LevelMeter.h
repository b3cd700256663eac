// Draws the spectrum and the levels of the sound that episodes react to.
#pragma once

#include "player/Drawing/LiveLevels.h"

#include <QTimer>
#include <QWidget>
#include <memory>

namespace tarnwick::player {

class LevelMeter : public QWidget {
    Q_OBJECT

  public:
    explicit LevelMeter(std::shared_ptr<const LiveLevels> levels, QWidget* parent = nullptr);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void look();

    std::shared_ptr<const LiveLevels> levels_;
    std::shared_ptr<const SoundLevels> shown_; // null before the first
    QTimer timer_;
};

} // namespace tarnwick::player
