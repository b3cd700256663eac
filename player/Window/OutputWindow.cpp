#include "player/Window/OutputWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace tarnwick::player {

OutputWindow::OutputWindow(Player& player, int target, QScreen& screen) {
    setWindowTitle(tr("Tarnwick output"));
    view_ = new PictureView(player, target);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    setCursor(Qt::BlankCursor);
    setGeometry(screen.geometry());
    winId(); // makes the native window, which the next line puts on the screen
    windowHandle()->setScreen(&screen);
    // The keys reach the picture's native window where it has the focus.
    for (QWindow* inner : windowHandle()->findChildren<QWindow*>())
        inner->installEventFilter(this);
    showFullScreen();
}

bool OutputWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        keyPressEvent(static_cast<QKeyEvent*>(event));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void OutputWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
}

void OutputWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    emit closed();
}

} // namespace tarnwick::player
