// A row for each parameter with its keys.
#pragma once

#include "player/KeysPanel/KeyCanvas.h"

class QScrollBar;

namespace tarnwick::player {

class DopeSheet : public KeyCanvas {
    Q_OBJECT

  public:
    DopeSheet(KeysEditor& editor, KeysView& view);

    // The column that fits the names.
    int wantedNamesWidth() const;
    QSize sizeHint() const override;
    // The values beside the names are those of the playhead.
    void updateValues();

  protected:
    std::optional<KeyPlace> keyAt(const QPointF& place) const override;
    KeySelection keysIn(const QRectF& area) const override;
    std::optional<std::size_t> rowAt(const QPointF& place) const override;
    void pressNames(const QMouseEvent& event) override;
    void doubleClick(const QPointF& place) override;
    void scrollBy(const QPointF& pixels) override;
    void turnWheel(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    int rowHeight() const;
    QRect rectOf(std::size_t row) const;
    void layOut();
    void showRow();
    void paintKeys(QPainter& painter, std::size_t row, const QRect& dirty) const;
    void paintName(QPainter& painter, std::size_t row) const;

    QScrollBar* rows_; // pixels
    std::size_t shownRow_ = 0;
};

} // namespace tarnwick::player
