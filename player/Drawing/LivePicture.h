// The drawing thread: draws the newest record, frame by frame, and shows it on its targets.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "TarnwickRender/Targets/FrameTarget.h"
#include "player/Drawing/LiveRecord.h"

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>

namespace tarnwick::player {

// The frame of a program is drawn once and copied to all targets, scaled to fit. A new program or
// size is prepared off screen, up to its first frame, while the old picture goes on.
//
// Functions may be called from any thread and do not wait for the drawing.
class LivePicture {
  public:
    using Listener = std::function<void(const LiveNews&)>;

    // `listener` is called on the drawing thread after each frame and each change of the news.
    explicit LivePicture(Listener listener);
    // Ends the thread. Waits for the frame that is drawn, at most a second: then the thread is left
    // behind, and the process must end.
    ~LivePicture();
    LivePicture(const LivePicture&) = delete;
    LivePicture& operator=(const LivePicture&) = delete;

    // Replaces the record.
    void show(std::shared_ptr<const LiveRecord> record);

    // A window or a picture that shows the frames. `target` is made with the device of a record
    // that was shown before.
    // An id that is used already is replaced.
    void addTarget(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size);
    void resizeTarget(int id, const PixelSize& size);
    // Shows the last frame again: the window was covered.
    void exposeTarget(int id);
    // Ready once the target is destroyed. Its window must live until then.
    std::future<void> removeTarget(int id);

    // The last frame, at the size at which it was drawn. Absent without one.
    std::future<std::optional<Picture>> snapshot();

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // shared with the thread, which may be left behind
    std::future<void> ended_;
    std::thread thread_;
};

} // namespace tarnwick::player
