// Work that goes to the GPU in several submissions, one after the other.
#pragma once

#include <vulkan/vulkan.h>

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

// What is left when the work is abandoned: `omitted` leaves out draws and kernels, but not the
// commands that later work relies on.
enum class WorkLeft : std::uint8_t { done, omitted };

// One thread calls its functions, in turn: next(), and took() once the GPU has finished the piece.
class PiecewiseWork {
  public:
    struct Piece {
        VkCommandBuffer commands = VK_NULL_HANDLE;
        bool isLast = false;
    };

    virtual ~PiecewiseWork() = default;
    // Records the next piece. Nothing if out of memory.
    virtual std::optional<Piece> next(WorkLeft left) = 0;
    virtual void took(double seconds) = 0;
};

} // namespace tarnwick::gpu
