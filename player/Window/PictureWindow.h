// The native window of a picture.
#pragma once

#include "player/Window/WindowGround.h"

#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace tarnwick::player {

class PictureWindow : public QWindow {
    Q_OBJECT

  public:
    explicit PictureWindow(CoveredContent covered) : covered_(covered) {
        setSurfaceType(QSurface::VulkanSurface);
    }

  signals:
    void exposed();
    void sizeChanged();

  protected:
    // Each native window that the platform makes for this.
    bool event(QEvent* event) override {
        const bool isDone = QWindow::event(event);
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceCreated)
            prepareGround(*this, covered_);
        return isDone;
    }
    void exposeEvent(QExposeEvent*) override {
        if (isExposed())
            emit exposed();
    }
    void resizeEvent(QResizeEvent*) override { emit sizeChanged(); }

  private:
    CoveredContent covered_;
};

} // namespace tarnwick::player
