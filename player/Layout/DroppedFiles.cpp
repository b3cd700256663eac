#include "player/Layout/DroppedFiles.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <utility>

namespace tarnwick::player {
namespace {

bool isTaken(const QString& file) {
    const QFileInfo info(file);
    const QString ending = info.suffix().toLower();
    return ending == QLatin1String("metal") || ending == QLatin1String("json") || info.isDir();
}

} // namespace

DroppedFiles::DroppedFiles(QWidget& window, std::function<bool(const QString&)> isLink,
                           std::function<void(const QString&)> open)
    : QObject(&window), window_(window), isLink_(std::move(isLink)), open_(std::move(open)) {
    qApp->installEventFilter(this);
}

// Browsers drag links as addresses, other programs as text.
QStringList DroppedFiles::taken(const QMimeData& data) const {
    const QString text = data.text().trimmed();
    if (!data.hasUrls())
        return isLink_(text) ? QStringList{text} : QStringList();
    QStringList places;
    for (const QUrl& url : data.urls()) {
        const QString place = url.isLocalFile() ? url.toLocalFile() : url.toString();
        if (url.isLocalFile() ? !isTaken(place) : !isLink_(place))
            return {};
        places << place;
    }
    return places;
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
    if ((!isDrag && type != QEvent::Drop) || !isOfWindow(watched))
        return false;
    auto* drop = static_cast<QDropEvent*>(event);
    // At the drop Qt cannot always read the data on X11, such as after the clipboard was written.
    if (type == QEvent::DragEnter || (type == QEvent::Drop && places_.isEmpty()))
        places_ = taken(*drop->mimeData());
    if (places_.isEmpty())
        return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop)
        for (const QString& place : std::exchange(places_, {}))
            open_(place);
    return true;
}

} // namespace tarnwick::player
