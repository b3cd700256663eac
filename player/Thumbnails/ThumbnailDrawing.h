// Draws thumbnails with a device of its own.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickRender/ShaderProgram.h"
#include "player/Drawing/Scene.h"
#include "player/Thumbnails/ThumbnailQueue.h"
#include "player/Thumbnails/ThumbnailStore.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick::player {

// Lives on one thread. The device and the compiler's process are started by that thread, so they
// have its priority, and the live picture does not wait for them.
class ThumbnailDrawing {
  public:
    static constexpr double longestDrawing = 60; // seconds of one picture

    explicit ThumbnailDrawing(std::filesystem::path folder) : store_(std::move(folder)) {}

    void prune() const { store_.prune(); }

    // Absent if `isWanted` became false. Blocks.
    std::optional<Thumbnail> draw(const ThumbnailTask& task, const std::function<bool()>& isWanted);
    // Closes the device and ends the compiler's process; the next drawing opens them again.
    void rest();

  private:
    struct Source {
        std::uint64_t serial = 0;
        std::shared_ptr<const Episode> episode;
        std::shared_ptr<const Settings> settings;
        std::string failure;
    };
    struct Known {
        std::string text;
        std::shared_ptr<const ShaderProgram> program; // null: it does not compile
        std::string failure;
    };
    struct Play {
        std::uint64_t serial = 0;
        std::unique_ptr<Scene> scene;
    };

    const Source& sourceOf(const ThumbnailTask& task);
    const Known& programOf(const std::shared_ptr<const Episode>& episode);
    bool open();
    std::string drawFrame(const ThumbnailTask& task, double time,
                          const std::function<bool()>& isWanted, Picture& picture);
    bool drawOnce(Scene& scene, const SceneMoment& moment);

    ThumbnailStore store_;
    std::unique_ptr<msl::SeparateWorker> worker_;
    std::shared_ptr<gpu::Device> device_;
    std::unique_ptr<gpu::CommandQueue> queue_;
    Source source_;
    std::deque<Known> known_; // the newest last
    Play play_;
};

} // namespace tarnwick::player
