// A surface of Wayland that covers an output until the first input, or a window.
#pragma once

#include "saver/HostSurface.h"

#include <memory>
#include <optional>

namespace tarnwick {

struct WaylandChoice {
    std::optional<unsigned> output; // the number of the output to cover; absent: a window
    PixelSize ownSize{1280, 720};   // of a window, in points
};

// One thread at a time. A cover is on the overlay layer of the layer shell, or a full-screen window
// where the compositor has none. It takes the keyboard and hides the pointer.
class WaylandWindow final : public HostSurface {
  public:
    // Of the display that WAYLAND_DISPLAY names; 0 if it does not answer.
    static unsigned outputCount();

    // Throws HostError if the display does not answer or has no windows. Blocks until the surface
    // has a size.
    explicit WaylandWindow(const WaylandChoice& choice);
    ~WaylandWindow() override;

    std::unique_ptr<gpu::Layer> newLayer(gpu::Device& device) override;
    int connection() const override;
    const PixelSize& size() const override;
    bool isGone() const override;
    bool hasLostDisplay() const override;
    bool isPreview() const override { return false; }
    bool isOwn() const override;
    // The compositor asked for a frame since the last one; it asks for none while the output is
    // switched off or the surface is covered.
    bool isVisible() const override;
    News readNews() override;
    double longestWait() const override;
    void willDraw() override;
    void setTitle(const std::string& title) override;
    void show(const Picture& picture) override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
