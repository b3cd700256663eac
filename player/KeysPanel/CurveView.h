// The curves of the current parameter, of those with selected keys, and of pinned ones.
#pragma once

#include "player/KeysPanel/KeyCanvas.h"

namespace tarnwick::player {

// Heights are positions in the range of each parameter, so that all curves have one scale; the axis
// is labelled for the current one.
class CurveView : public KeyCanvas {
    Q_OBJECT

  public:
    CurveView(KeysEditor& editor, KeysView& view);

    QSize sizeHint() const override { return {400, 120}; }
    // The values of the selected keys, or the whole range without any.
    void frameSelection();
    void showWholeRange();

  protected:
    std::optional<KeyPlace> keyAt(const QPointF& place) const override;
    KeySelection keysIn(const QRectF& area) const override;
    std::optional<std::size_t> rowAt(const QPointF& place) const override;
    double shareBetween(double from, double to) const override;
    void doubleClick(const QPointF& place) override;
    void scrollBy(const QPointF& pixels) override;
    void turnWheel(QWheelEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Axis shares() const; // upwards
    QPointF placeOf(const ParamDecl& param, double time, float value) const;
    void set(const Range& shares);
    void paintValues(QPainter& painter) const;
    void paintCurve(QPainter& painter, std::size_t row, const QRect& dirty) const;
    void paintReadout(QPainter& painter) const;

    Range range_{0, 1}; // shares of the parameters' ranges
};

} // namespace tarnwick::player
