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

// Empty unless all files are taken.
QStringList takenFiles(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (!url.isLocalFile() || !isTaken(url.toLocalFile()))
            return {};
        files << url.toLocalFile();
    }
    return files;
}

} // namespace

DroppedFiles::DroppedFiles(QWidget& window, std::function<void(const QString&)> open)
    : QObject(&window), window_(window), open_(std::move(open)) {
    qApp->installEventFilter(this);
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
    if (type != QEvent::DragMove)
        files_ = takenFiles(*drop->mimeData());
    if (files_.isEmpty())
        return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop)
        for (const QString& file : std::exchange(files_, {}))
            open_(file);
    return true;
}

} // namespace tarnwick::player
