// The live picture in a window.
#pragma once

#include "player/App/Player.h"

#include <QImage>
#include <QVulkanInstance>
#include <QWidget>
#include <future>
#include <memory>

class QLabel;

namespace tarnwick::player {

class PictureWindow;

// A native child window that the device presents on. Where the platform has no Vulkan surfaces, the
// frames are copied and painted. Each view is one of its targets.
class PictureView : public QWidget {
    Q_OBJECT

  public:
    // `id` is the target's.
    PictureView(Player& player, int id, QWidget* parent = nullptr);
    ~PictureView() override;

    // A text over the picture; empty: none.
    void setMessage(const QString& message);
    // A line of figures in a corner; empty: none.
    void setFigures(const QString& figures);
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
    void attach(); // a target of the present device
    void detach(); // waits until the target is gone, at most a second
    void layOut();
    void point(const QPointF& place);
    QLabel* label(Qt::Alignment alignment);

    Player& player_;
    int id_;
    QVulkanInstance instance_;
    PictureWindow* window_ = nullptr; // null where frames are painted
    QWidget* container_ = nullptr;
    QLabel* message_;
    QLabel* figures_;
    QImage image_; // the last frame, where frames are painted
    bool isAttached_ = false;
    bool hasSurface_ = true; // the instance is that of the present device
};

} // namespace tarnwick::player
