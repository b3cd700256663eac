// The work of the drawing thread.
#pragma once

#include "TarnwickBase/FrameTimes.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Targets/FrameClock.h"
#include "player/Drawing/ChannelPictures.h"
#include "player/Drawing/LiveMail.h"
#include "player/Drawing/LiveTargets.h"
#include "player/Drawing/PreviewScale.h"
#include "player/Drawing/Scene.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick::player {

// Lives on one thread.
class Drawing {
  public:
    using Listener = std::function<void(const LiveNews&)>;

    Drawing(LiveMail& mail, Listener listener);

    // Draws until the end of the mail.
    void run();

    // Requests of the mail; LivePicture describes them.
    void addTarget(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size);
    void resizeTarget(int id, const PixelSize& size);
    void exposeTarget(int id);
    void removeTarget(int id);
    std::optional<Picture> picture();

  private:
    // Each returns the seconds until the next step, unless there is mail.
    double step();
    double stepPlaying();
    void showAgain();
    // False if the pictures cannot be shown now; the failure is told until they can be.
    bool present(const gpu::Texture* picture);

    void take(std::shared_ptr<const LiveRecord> record);
    void useDevice();
    void stop(std::string failure); // nothing is drawn until another program or size is wanted
    bool isStopped() const;
    bool isOccupied();
    bool hasScene() const; // of the wanted program and size
    bool wantsExactScene() const;
    double holdSeconds(double now) const;
    PixelSize wantedSize() const;
    SceneMoment moment() const;
    void bringChannels(SceneMoment& moment);
    bool drawChannel(Scene& scene, const SceneMoment& moment);
    std::vector<const ShaderProgram*> programs() const;
    std::shared_ptr<const LiveChannels> shownChannels() const;
    double drawnTime() const;
    void prepare();
    bool isWarm(Scene& scene, const SceneMoment& moment);
    bool draw(Scene& scene, const SceneMoment& moment);
    bool finishes(gpu::CommandBuffer& commands, double last = 0);
    void showFrame(); // that was drawn
    void countFrame(double now);
    void say() { listener_(news_); }

    LiveMail& mail_;
    Listener listener_;
    std::shared_ptr<const LiveRecord> record_; // the newest
    std::shared_ptr<const LiveRecord> drawn_;  // of the last frame
    std::uint64_t clockNumber_ = 0;            // SceneMoment::clock of the record
    std::shared_ptr<gpu::Device> device_;      // of the queue, the scenes and the targets
    std::unique_ptr<gpu::CommandQueue> queue_;
    std::unique_ptr<Scene> scene_; // whose pictures are shown
    std::unique_ptr<Scene> next_;  // in preparation
    LiveTargets targets_;
    bool cannotPresent_ = false; // the failure in the news is of the targets
    struct HeldMoment {
        double time; // seconds of the replay
        std::uint64_t clock;
        std::shared_ptr<const Performance> replay;
    };
    std::optional<HeldMoment> held_; // of a replay, until its frame is drawn
    ChannelPictures channels_;
    double channelSeconds_ = 0; // of the episodes that channels show, in the last frame
    PreviewScale scale_;
    FrameTimes times_;
    FrameClock clock_{Transport::framesPerSecond};
    double ended_ = 0;         // host seconds of the end of the last frame
    std::deque<double> shown_; // host seconds of the frames of the last second
    LiveNews news_;
    struct Stopped {
        std::vector<const ShaderProgram*> programs; // kept by the record
        std::shared_ptr<const LiveRecord> record;
        std::shared_ptr<const Performance> replay;
        PixelSize size;
    };
    std::optional<Stopped> stopped_;
    std::optional<gpu::CommandBuffer> abandoned_; // a frame that took too long and is still drawn
};

} // namespace tarnwick::player
