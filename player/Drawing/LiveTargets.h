// The windows and pictures on which the drawing thread shows its frames.
#pragma once

#include "TarnwickGPU/Commands.h"
#include "TarnwickRender/OverlayQuad.h"
#include "TarnwickRender/Targets/FrameTarget.h"

#include <map>
#include <memory>

namespace tarnwick::player {

// One thread at a time.
class LiveTargets {
  public:
    // Drops all targets, which belong to another device. Throws as OverlayQuad does; present()
    // tries again then.
    void use(gpu::Device& device);

    void add(int id, std::unique_ptr<FrameTarget> target, const PixelSize& size);
    void resize(int id, const PixelSize& size);
    void expose(int id);
    void remove(int id) { targets_.erase(id); }

    // Whether a target must show the last frame again.
    bool areStale() const;
    // Shows a picture on each target, in the middle, at the largest size that fits.
    // Null: shows black. Throws as OverlayQuad does if use() failed, and shows nothing then.
    void present(const gpu::Texture* picture, gpu::CommandQueue& queue);

  private:
    struct Target {
        std::unique_ptr<FrameTarget> target;
        PixelSize size;
        bool isStale = true;
    };
    void present(Target& target, const gpu::Texture* picture, gpu::CommandQueue& queue) const;

    std::map<int, Target> targets_;
    gpu::Device* device_ = nullptr; // of the last use()
    std::unique_ptr<OverlayQuad> copy_;
};

} // namespace tarnwick::player
