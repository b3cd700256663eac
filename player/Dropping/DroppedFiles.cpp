#include "player/Dropping/DroppedFiles.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace tarnwick::player {
namespace {

// Browsers drag links as addresses, other programs as text.
DraggedPlaces placesOf(const QMimeData& data) {
    DraggedPlaces places;
    if (!data.hasUrls()) {
        if (const QString text = data.text().trimmed(); !text.isEmpty())
            places.addresses << text;
        return places;
    }
    for (const QUrl& url : data.urls())
        url.isLocalFile() ? places.files << url.toLocalFile() : places.addresses << url.toString();
    return places;
}

QPoint pointOf(const QObject& watched, const QDropEvent& event) {
    const QPoint inside = event.position().toPoint();
    if (const auto* widget = qobject_cast<const QWidget*>(&watched))
        return widget->mapToGlobal(inside);
    const auto* window = qobject_cast<const QWindow*>(&watched);
    return window != nullptr ? window->mapToGlobal(inside) : inside;
}

} // namespace

DroppedFiles::DroppedFiles(QWidget& window) : QObject(&window), window_(window) {
    qApp->installEventFilter(this);
}

void DroppedFiles::add(QWidget& part, DropTaker taker) {
    part.setAcceptDrops(true);
    parts_.emplace_back(&part, std::move(taker));
}

bool DroppedFiles::isOfWindow(const QObject* watched) const {
    if (const auto* widget = qobject_cast<const QWidget*>(watched))
        return widget->window() == &window_;
    for (const auto* one = qobject_cast<const QWindow*>(watched); one != nullptr;
         one = one->parent())
        if (one == window_.windowHandle())
            return true;
    return false;
}

bool DroppedFiles::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    const bool isDrag = type == QEvent::DragEnter || type == QEvent::DragMove;
    if (!isDrag && type != QEvent::Drop)
        return false;
    auto& drop = static_cast<QDropEvent&>(*event); // also the base of the other two
    if (type == QEvent::DragEnter || (type == QEvent::Drop && dragged_.isEmpty()))
        dragged_ = placesOf(*drop.mimeData());
    const auto takes = [&](const DropTaker& taker) { return give(taker, watched, drop); };
    bool isTaken = isOfWindow(watched) && std::ranges::any_of(everywhere_, takes);
    for (const auto& [part, taker] : parts_)
        isTaken = isTaken || (part == watched && takes(taker));
    if (type == QEvent::Drop && isTaken)
        dragged_ = {};
    return isTaken;
}

bool DroppedFiles::give(const DropTaker& taker, QObject* watched, QDropEvent& event) const {
    const QStringList taken = taker.taken(dragged_);
    if (taken.isEmpty())
        return false;
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (event.type() == QEvent::Drop)
        taker.take(taken, pointOf(*watched, event));
    return true;
}

} // namespace tarnwick::player
