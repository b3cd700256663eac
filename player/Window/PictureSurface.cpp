#include "player/Window/PictureSurface.h"

#include "TarnwickRender/Targets/WindowTarget.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTimer>
#include <chrono>

namespace tarnwick::player {
namespace {

constexpr int retiredInterval = 20; // milliseconds between two looks at a retired surface

bool isX11() {
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

} // namespace

bool PictureSurface::isBelowWidgets() {
    return isX11();
}

bool PictureSurface::endsWhenHidden() {
    return isWayland();
}

std::unique_ptr<PictureSurface> PictureSurface::make(std::shared_ptr<gpu::Device> device,
                                                     QWidget& parent) {
    if (!device || !(isX11() || isWayland()))
        return nullptr;
    std::unique_ptr<PictureSurface> made(new PictureSurface(std::move(device)));
    made->instance_.setVkInstance(static_cast<VkInstance>(made->device_->vulkanInstance()));
    if (!made->instance_.create())
        return nullptr;
    // A CPU device does not draw in step with the display anyway.
    made->window_ = new PictureWindow(made->device_->info().isCPU ? CoveredContent::isKept
                                                                  : CoveredContent::isForgotten);
    made->window_->setVulkanInstance(&made->instance_);
    made->container_.reset(QWidget::createWindowContainer(made->window_, &parent));
    // Native, as are the labels over it: only siblings that are native have an order. On Wayland
    // the window must be a child of the top window, because nothing else has a surface.
    made->container_->setAttribute(Qt::WA_NativeWindow, isBelowWidgets());
    made->container_->setFocusPolicy(Qt::NoFocus);
    // It would pass drags on to its window, whose events the parent takes, for ever.
    made->container_->setAcceptDrops(false);
    return made;
}

// The window, with its surface, before the instance, and that before the device.
PictureSurface::~PictureSurface() {
    container_.reset();
    instance_.destroy();
}

std::unique_ptr<FrameTarget> PictureSurface::newTarget() {
    void* surface = QVulkanInstance::surfaceForWindow(window_);
    auto layer = surface != nullptr ? device_->newLayer(surface) : nullptr;
    return layer ? std::make_unique<WindowTarget>(*device_, std::move(layer)) : nullptr;
}

// The drawing thread may be in a frame of many seconds. A surface that it still has at the end of
// the process is left to the system.
void PictureSurface::retire(std::unique_ptr<PictureSurface> surface, std::future<void> gone) {
    surface->container_->hide();
    surface->container_->setParent(nullptr);
    auto* timer = new QTimer(QCoreApplication::instance());
    auto future = std::make_shared<std::future<void>>(std::move(gone));
    QObject::connect(timer, &QTimer::timeout, timer, [timer, future, left = surface.release()] {
        if (future->valid() &&
            future->wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return;
        delete left;
        timer->deleteLater();
        timer->stop();
    });
    timer->start(retiredInterval);
}

} // namespace tarnwick::player
