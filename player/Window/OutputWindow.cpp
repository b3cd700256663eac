#include "player/Window/OutputWindow.h"

#include <QApplication>
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
    showFullScreen();
    connect(qApp, &QGuiApplication::screenRemoved, this,
            [this, &player, display = &screen](QScreen* gone) {
                if (gone != display)
                    return;
                player.tell(
                    tr("The display %1 was removed; the output is closed.").arg(gone->name()));
                close();
            });
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
