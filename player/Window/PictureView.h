// The live picture in a window.
#pragma once

#include "player/App/Player.h"
#include "player/Window/ClosableTarget.h"
#include "player/Window/PictureSurface.h"

#include <QImage>
#include <QWidget>
#include <memory>

class QLabel;

namespace tarnwick::player {

class FrameGraph;

// A native child window that the device presents on. Where the platform has no Vulkan surfaces, the
// frames are copied and painted. Each view is one of its targets.
class PictureView : public QWidget {
    Q_OBJECT

  public:
    // `id` is the target's.
    PictureView(Player& player, int id, QWidget* parent = nullptr);
    ~PictureView() override;

    // A text over the picture, or below it on Wayland; empty: none.
    void setMessage(const QString& message);
    // Lines of figures in a corner, or above the picture on Wayland, over the times of the last
    // frames; empty: none.
    void setFigures(const QString& figures);
    void addFrame(double frameSeconds); // to these times
    // The picture's size in pixels of the screen.
    PixelSize pixels() const;

  signals:
    void resized();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void makeSurface(); // of the present device
    void renewSurface();
    void attach();     // a target of the present device
    void dropTarget(); // with the surface
    void leaveSurface();
    void layOut();
    void layOutOver();
    QRect layOutBeside(); // the rest of the view
    void point(const QPointF& place);
    QLabel* label(Qt::Alignment alignment);

    Player& player_;
    int id_;
    std::unique_ptr<PictureSurface> surface_;    // null where frames are painted
    std::shared_ptr<SurfaceState> surfaceState_; // of the attached target; null without one
    QLabel* message_ = nullptr;
    FrameGraph* figures_ = nullptr;
    QImage image_; // the last frame, where frames are painted
    bool isAttached_ = false;
};

} // namespace tarnwick::player
