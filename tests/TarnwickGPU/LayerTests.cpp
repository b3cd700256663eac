#include "TarnwickGPU/Layer.h"
#include "tests/TarnwickGPU/Gpu.h"
#include "tests/TarnwickGPU/HeapCount.h"
#include "tests/saver/VirtualDisplay.h"

#include <X11/Xlib.h>

#include <chrono>
#include <thread>

namespace tarnwick::tests {

namespace {

using namespace gpu;

// A window on the test's own display, with a separate connection for presenting.
class LayerTest : public Gpu {
  protected:
    void SetUp() override {
        Gpu::SetUp();
        if (!device)
            return;
        screen.emplace();
        window = screen->makeWindow({0, 0, 64, 48});
        display = XOpenDisplay(screen->name().c_str());
        layer = device->newLayer(display, window);
        if (!layer)
            GTEST_SKIP() << "The device does not present on Xvfb.";
    }

    void TearDown() override {
        layer = nullptr;
        if (display)
            XCloseDisplay(display);
    }

    // Clears a drawable to a colour and presents it; false without a drawable.
    bool showColor(const ClearColor& color) {
        const auto drawable = layer->nextDrawable();
        if (!drawable)
            return false;
        auto commands = queue->commandBuffer();
        auto encoder = commands->renderCommandEncoder({.color = {.texture = &drawable->texture(),
                                                                 .load = LoadAction::clear,
                                                                 .clear = color}});
        encoder->endEncoding();
        commands->present(*drawable);
        commands->commit();
        return true;
    }

    // Waits until the window shows the colour, since the driver presents on its own thread.
    bool eventuallyShows(const std::array<int, 3>& color, int x, int y) {
        for (int attempt = 0; attempt < 200; ++attempt) {
            if (screen->pixel(window, x, y) == color)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    std::optional<VirtualDisplay> screen;
    Display* display = nullptr;
    unsigned long window = 0;
    std::unique_ptr<Layer> layer;
};

TEST_F(LayerTest, showsPresentedFramesAlsoAfterAResize) {
    ASSERT_TRUE(showColor({1, 0, 0, 1}));
    EXPECT_TRUE(eventuallyShows({255, 0, 0}, 63, 47));
    screen->resizeWindow(window, {128, 100});
    layer->resize(128, 100);
    {
        const auto drawable = layer->nextDrawable();
        ASSERT_TRUE(drawable);
        EXPECT_EQ(drawable->texture().width(), 128u);
        EXPECT_EQ(drawable->texture().height(), 100u);
    } // destroyed without present(): the next drawable is the same
    for (int frame = 0; frame < 10; ++frame)
        ASSERT_TRUE(showColor({0, 0, frame / 9.0, 1}));
    EXPECT_TRUE(eventuallyShows({0, 0, 255}, 127, 99));
}

TEST_F(LayerTest, reusesDrawablesThatWereNotPresented) {
    for (int attempt = 0; attempt < 8; ++attempt) { // more than there are images
        const auto drawable = layer->nextDrawable();
        ASSERT_TRUE(drawable);
        std::optional<CommandBuffer> commands;
        for (int encoding = 0; encoding < 2; ++encoding) { // the first one is dropped
            commands = queue->commandBuffer();
            auto encoder = commands->renderCommandEncoder(
                {.color = {.texture = &drawable->texture(), .load = LoadAction::load}});
            encoder->endEncoding();
        }
        if (attempt % 2 == 0)
            commands->present(*drawable); // and never commit
        else
            commands->commit(); // and never present
    }
    layer->resize(1, 1); // makes a new swapchain while one image is acquired
    ASSERT_TRUE(showColor({0, 1, 0, 1}));
    EXPECT_TRUE(eventuallyShows({0, 255, 0}, 5, 5));
}

TEST_F(LayerTest, givesNothingOnceTheWindowIsClosed) {
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    ASSERT_TRUE(showColor({1, 1, 1, 1}));
    screen->destroyWindow(window);
    bool shows = true;
    for (int frame = 0; frame < 20 && shows; ++frame) {
        shows = showColor({1, 1, 1, 1});
        layer->resize(10 + static_cast<std::uint32_t>(frame), 10);
    }
    EXPECT_FALSE(shows);
    EXPECT_FALSE(device->isLost());
}

TEST_F(LayerTest, allocatesNothingOnceWarm) {
    layer = nullptr;
    withoutValidation();
    layer = device->newLayer(display, window);
    EXPECT_EQ(heapCountOnceWarm([this] { showColor({0, 0, 0, 1}); }), 0u);
}

} // namespace

} // namespace tarnwick::tests
