// The native window of a picture.
#pragma once

#include <QWindow>

namespace tarnwick::player {

class PictureWindow : public QWindow {
    Q_OBJECT

  public:
    PictureWindow() { setSurfaceType(QSurface::VulkanSurface); }

  signals:
    void exposed();
    void sizeChanged();

  protected:
    void exposeEvent(QExposeEvent*) override {
        if (isExposed())
            emit exposed();
    }
    void resizeEvent(QResizeEvent*) override { emit sizeChanged(); }
};

} // namespace tarnwick::player
