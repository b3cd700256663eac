// The X11 window of a saver: its own, a given one, or the root window.
#pragma once

#include "saver/Geometry.h"
#include "saver/HostSurface.h"

#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

// The window to use. The first of these that is given: `id`, XSCREENSAVER_WINDOW of the
// environment, the root window if `root` is true (a virtual root, named by the property
// __SWM_VROOT, replaces it), a new window. `monitor` goes before all.
struct WindowChoice {
    std::optional<unsigned long> id; // of an X11 window
    bool root = false;
    // The number of a monitor: a new window covers it until the first input. Input of the user goes
    // to no other program meanwhile, if no other program prevents that.
    std::optional<unsigned> monitor;
    PixelSize ownSize{1280, 720}; // of a new window
};

// One thread at a time.
class HostWindow final : public HostSurface {
  public:
    // Whether $DISPLAY names an X11 display that answers.
    static bool hasDisplay();
    // The number of monitors of $DISPLAY; 0 if it does not answer.
    static unsigned monitorCount();

    // Throws HostError if no display can be opened or the window does not exist.
    explicit HostWindow(const WindowChoice& choice);
    ~HostWindow() override;

    std::unique_ptr<gpu::Layer> newLayer(gpu::Device& device) override;
    int connection() const override;
    const PixelSize& size() const override;
    bool isGone() const override;
    bool hasLostDisplay() const override;
    // A given window within a window that is not a cover of the screen. (XScreenSaver gives no
    // other sign.)
    bool isPreview() const override;
    bool isOwn() const override;
    // Mapped and not fully covered, on a screen that is not switched off (DPMS 1.2).
    bool isVisible() const override;
    News readNews() override;
    void setTitle(const std::string& title) override;
    void show(const Picture& picture) override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
