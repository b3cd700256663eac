// The saver: one episode from a bundle, drawn frame by frame, or a line with the error.
#pragma once

#include "TarnwickBase/FrameTimes.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/Channels/ChannelSources.h"
#include "TarnwickRender/FrameInputs.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/ShaderProgram.h"
#include "saver/MTKView.h"
#include "saver/ScreenSaverView.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// What the host chooses.
struct SaverChoices {
    ParamValues params; // instead of base values and keys of the bundle's settings
    double longestFrame = FrameTimes::defaultLongestFrame; // seconds; FrameTimes::setLongestFrame
};

// Reads Shader/shader.metal, Shader/saver.json and the files of Channels/ of its bundle. Everything
// is set up in the constructor: afterwards there is a subview (metal()) that draws, or a failure.
// Frames that take too long are a failure later. Only a lost device is opened again. The settings
// are optional: a missing or malformed document is ignored, values outside a declared range are
// clamped. Waits for the GPU with channels and for particles at a new size, for a tenth of a second
// at most; otherwise it waits for a drawable if the host draws while no drawable is free.
class TarnwickSaverView final : public ScreenSaverView, private MTKViewDelegate {
  public:
    TarnwickSaverView(const Rectangle& frame, ScreenKind kind, const Bundle& bundle,
                      HostClock hostClock = currentMediaTime, const SaverChoices& choices = {});

    void animateOneFrame() override {} // the subview's host drives the drawing
    void drawRect(Picture& picture) const override;
    bool hasConfigureSheet() const override { return false; }
    void* configureSheet() const override { return nullptr; }

    MTKView* metal() const { return failure_ ? nullptr : metal_.get(); } // null after a failure
    const std::optional<std::string>& failure() const { return failure_; }
    // Why the last frame was black without a failure: the device could not make the GPU objects
    // that the episode needs at this size.
    const std::optional<std::string>& absence() const { return absence_; }
    const Settings& settings() const { return settings_; }
    // Errors in the settings document and of channels, a sentence each; the saver still draws.
    const std::vector<std::string>& settingsRemarks() const { return settingsRemarks_; }
    // Whether setting up succeeded; frames may have been shown, also before a failure.
    bool mayHaveDrawn() const { return metal_ != nullptr; }
    // Measures how long the frames take; too long is a failure. The host calls it regularly. Never
    // blocks.
    void judgeFrames();
    double clock() const { return clock_; } // seconds during which frames were drawn

    // Whether the device was lost, so that frames are no longer drawn.
    bool hasLostDevice() const;
    // Opens the device again and sets everything up anew, with the clock where it was: a particle
    // episode starts again. The subview is another one, without a target, and the old one and its
    // target are destroyed. A device that is lost soon again, or cannot be opened, is a failure.
    // Blocks while the episode is compiled.
    void reopen();

  private:
    void setUp();
    void readSettings(const Bundle& bundle);
    void setParams(const ParamValues& params);
    void fitSettings();
    void addMetalView(std::shared_ptr<gpu::Device> device, double longestFrame);

    void mtkViewDrawableSizeWillChange(MTKView& view, const PixelSize& size) override;
    void drawInMTKView(MTKView& view) override;
    void advanceClock();
    void fitFrames(gpu::Device* device, const gpu::Texture& drawable);
    void fitInputs(gpu::Device& device, std::int64_t width, std::int64_t height);
    ShaderInputs inputs();
    FrameMoment moment() const;

    Bundle bundle_;
    SaverChoices choices_;
    std::unique_ptr<MTKView> metal_;
    std::shared_ptr<const ShaderProgram> program_; // shared with the frames
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<ProgramFrames> frames_; // of the size of the last drawable
    bool hasNewSize_ = false;               // of drawables, since that one
    ChannelSources channels_;
    std::shared_ptr<FrameInputs> inputs_; // null without channels
    Settings settings_;
    std::vector<std::string> settingsRemarks_;
    double clock_ = 0;           // seconds
    std::optional<double> last_; // the host clock at the previous frame
    std::optional<double> loss_; // the host clock when the device was lost before
    std::optional<std::string> failure_, absence_;
    HostClock hostClock_;
};

} // namespace tarnwick
