// Paints a cell of a grid: a picture, a title and a line below it.
#pragma once

#include <QStyledItemDelegate>

namespace tarnwick::player {

class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    // The width of the pictures, in device-independent pixels; they are 16:9.
    CellDelegate(int pictureWidth, QObject* parent)
        : QStyledItemDelegate(parent), pictureWidth_(pictureWidth) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    void paintPicture(QPainter& painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index, const QRect& place) const;

    int pictureWidth_;
};

} // namespace tarnwick::player
