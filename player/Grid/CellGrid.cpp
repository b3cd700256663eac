#include "player/Grid/CellGrid.h"

#include "player/Grid/CellDelegate.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int lookPause = 60;     // milliseconds after scrolling
constexpr int filmInterval = 110; // milliseconds between two pictures of a film

} // namespace

CellGrid::CellGrid(ThumbnailService& service, int pictureWidth, QWidget* parent)
    : QListView(parent) {
    model_ = new CellModel(service, this);
    setModel(model_);
    setItemDelegate(new CellDelegate(pictureWidth, this));
    setViewMode(QListView::IconMode);
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Static);
    setUniformItemSizes(true);
    setSpacing(4);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    look_.setSingleShot(true);
    look_.setInterval(lookPause);
    connect(&look_, &QTimer::timeout, this, &CellGrid::look);
    film_.setInterval(filmInterval);
    connect(&film_, &QTimer::timeout, this, [this] { model_->advance(); });
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (hasFocus())
                    pointAt(current);
            });
}

void CellGrid::setCells(std::vector<Cell> cells) {
    model_->setCells(std::move(cells));
    if (count() > 0)
        selectionModel()->setCurrentIndex(model_->index(0), QItemSelectionModel::NoUpdate);
    fitHeight();
    look_.start();
}

void CellGrid::setShowsAllRows() {
    showsAllRows_ = true;
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fitHeight();
}

void CellGrid::fitHeight() {
    if (!showsAllRows_)
        return;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QSize cell = itemDelegate()->sizeHint(option, {}) + QSize(spacing(), spacing());
    const int columns = std::max((viewport()->width() - spacing()) / cell.width(), 1);
    const int rows = (count() + columns - 1) / columns;
    setFixedHeight(rows * cell.height() + 2 * spacing());
}

// Within a page that scrolls, only a part of this widget may be visible.
void CellGrid::look() {
    const QRect seen = viewport()->visibleRegion().boundingRect();
    if (!isVisible() || seen.isEmpty()) {
        model_->setVisible(0, -1);
        return;
    }
    int first = count(), last = -1;
    for (int row = 0; row < count(); ++row)
        if (visualRect(model_->index(row)).intersects(seen)) {
            first = std::min(first, row);
            last = row;
        }
    model_->setVisible(first, last);
}

void CellGrid::pointAt(const QModelIndex& index) {
    model_->setPointedAt(index.isValid() ? index.row() : -1);
}

void CellGrid::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    fitHeight();
    look_.start();
}

void CellGrid::showEvent(QShowEvent* event) {
    QListView::showEvent(event);
    film_.start();
    look_.start();
}

void CellGrid::hideEvent(QHideEvent* event) {
    QListView::hideEvent(event);
    film_.stop();
    look();
}

void CellGrid::scrollContentsBy(int dx, int dy) {
    QListView::scrollContentsBy(dx, dy);
    look_.start();
}

// Painting is the only sign that the page around this scrolled, or that its dock, which is shown
// outside of the window while it is behind a tab, was moved into it.
bool CellGrid::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Paint && !look_.isActive())
        look_.start();
    return QListView::viewportEvent(event);
}

// Up in the first row and Down in the last one go to the neighbouring grid.
void CellGrid::keyPressEvent(QKeyEvent* event) {
    const QModelIndex current = currentIndex();
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && current.isValid() && event->modifiers() == Qt::NoModifier) {
        emit chosen(current.row());
        return;
    }
    if (event->key() == Qt::Key_Slash) { // of the page around this
        event->ignore();
        return;
    }
    QListView::keyPressEvent(event);
    if (!showsAllRows_ || currentIndex() != current)
        return;
    if (event->key() == Qt::Key_Down)
        focusNextChild();
    else if (event->key() == Qt::Key_Up)
        focusPreviousChild();
}

void CellGrid::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->pos());
    if (event->button() == Qt::LeftButton && index.isValid() && index == currentIndex())
        emit chosen(index.row());
}

void CellGrid::mouseMoveEvent(QMouseEvent* event) {
    QListView::mouseMoveEvent(event);
    pointAt(indexAt(event->pos()));
}

void CellGrid::leaveEvent(QEvent* event) {
    QListView::leaveEvent(event);
    pointAt(hasFocus() ? currentIndex() : QModelIndex());
}

void CellGrid::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason && currentIndex().isValid()) {
        selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
        pointAt(currentIndex());
    }
}

void CellGrid::focusOutEvent(QFocusEvent* event) {
    QListView::focusOutEvent(event);
    if (showsAllRows_)
        clearSelection();
    pointAt({});
}

} // namespace tarnwick::player
