// The time of an episode as a slider, with the loop range on it.
#pragma once

#include "player/Model/LoopEnds.h"

#include <QSlider>
#include <optional>

namespace tarnwick::player {

// A click goes to its place. The ends of the loop range are dragged by their handles.
class Scrubber : public QSlider {
    Q_OBJECT

  public:
    static constexpr int ticks = 100; // of the slider in a second

    explicit Scrubber(QWidget* parent = nullptr);

    void setLoop(const std::optional<LoopRange>& loop);

  signals:
    void loopDragged(double start, double end); // seconds

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QRect grooveRect() const;
    int handleLength() const;
    int placeOf(double time) const; // pixels from the left
    double timeAt(double place) const;
    std::optional<LoopEnd> handleAt(const QPointF& place) const;

    std::optional<LoopRange> loop_;
    std::optional<LoopEnd> held_;
};

} // namespace tarnwick::player
