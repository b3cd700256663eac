// The native window of a picture, with the surface on which a device presents it.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Targets/FrameTarget.h"
#include "player/Window/PictureWindow.h"

#include <QVulkanInstance>
#include <QWidget>
#include <future>
#include <memory>

namespace tarnwick::player {

// On the thread of the windows. Belongs to one device: another device needs another surface.
class PictureSurface {
  public:
    // The native window is a child of `parent`. Null where the platform has no Vulkan surfaces.
    static std::unique_ptr<PictureSurface> make(std::shared_ptr<gpu::Device> device,
                                                QWidget& parent);
    ~PictureSurface(); // its target is gone
    PictureSurface(const PictureSurface&) = delete;
    PictureSurface& operator=(const PictureSurface&) = delete;

    // Whether native widgets can be over the window: on X11. On Wayland they have no surfaces of
    // their own, so the window would be over them.
    static bool isBelowWidgets();

    // Whether the surface is destroyed while the window is hidden: on Wayland.
    static bool endsWhenHidden();

    PictureWindow& window() { return *window_; }
    QWidget& container() { return *container_; }
    // Null if the device cannot present on the window.
    std::unique_ptr<FrameTarget> newTarget();

    // Hides the window and destroys it once its target is gone, which `gone` tells.
    static void retire(std::unique_ptr<PictureSurface> surface, std::future<void> gone);

  private:
    explicit PictureSurface(std::shared_ptr<gpu::Device> device) : device_(std::move(device)) {}

    std::shared_ptr<gpu::Device> device_; // the surface belongs to its VkInstance
    QVulkanInstance instance_;
    PictureWindow* window_ = nullptr; // owned by the container
    std::unique_ptr<QWidget> container_;
};

} // namespace tarnwick::player
