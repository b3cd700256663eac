// A grid of pictures. The arrow keys move, Enter or a click chooses.
#pragma once

#include "player/Grid/CellModel.h"

#include <QListView>
#include <QTimer>

namespace tarnwick::player {

class CellGrid : public QListView {
    Q_OBJECT

  public:
    // `pictureWidth` is in device-independent pixels.
    CellGrid(ThumbnailService& service, int pictureWidth, QWidget* parent = nullptr);

    void setCells(std::vector<Cell> cells);
    const Cell& cell(int row) const { return model_->cell(row); }
    int count() const { return model_->rowCount(); }
    // Takes as much height as all cells need, instead of scrolling.
    void setShowsAllRows();

  signals:
    void chosen(int row);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    void fitHeight();
    void look(); // which cells are visible
    void pointAt(const QModelIndex& index);

    CellModel* model_;
    QTimer look_, film_;
    bool showsAllRows_ = false;
};

} // namespace tarnwick::player
