// Draws small pictures of episodes in the background, at low priority, one at a time.
#pragma once

#include "player/Thumbnails/Thumbnail.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

namespace tarnwick::player {

// Functions may be called from any thread and do not wait.
class Thumbnails {
  public:
    using Listener = std::function<void(Thumbnail)>;

    // Pictures are kept in `folder`; empty: they are not kept. `listener` is called on the thread
    // that draws, with each picture or with the reason why it is missing.
    Thumbnails(std::filesystem::path folder, Listener listener);
    // No call of the listener begins afterwards. Waits at most a second for the picture that is
    // drawn: then the thread is left behind, and the process must end.
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    void ask(ThumbnailRequest request);
    // A picture of the request may still arrive.
    void cancel(std::uint64_t id);
    // While the live picture is slow, this rests for four times as long as it draws.
    void setLivePictureIsSlow(bool isSlow);

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // shared with the thread, which may be left behind
    std::thread thread_;
};

} // namespace tarnwick::player
