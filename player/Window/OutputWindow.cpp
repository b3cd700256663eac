#include "player/Window/OutputWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace tarnwick::player {

OutputWindow::OutputWindow(Player& player, int target, QScreen& screen, OutputFocus focus)
    : view_(new PictureView(player, target)), screen_(screen) {
    setWindowTitle(tr("Tarnwick output"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating, focus == OutputFocus::leavesToWindow);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    setCursor(Qt::BlankCursor);
    setGeometry(screen.geometry());
    winId(); // makes the native window, which the next line puts on the screen
    windowHandle()->setScreen(&screen);
    setWindowState(Qt::WindowFullScreen);
    show(); // showFullScreen() would always take the focus
    if (focus == OutputFocus::takes)
        activateWindow();
    // A window manager does it, but not every display has one.
    connect(&screen, &QScreen::geometryChanged, this,
            [this](const QRect& geometry) { setGeometry(geometry); });
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
