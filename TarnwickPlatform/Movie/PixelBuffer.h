// Pictures on their way into a movie, and pools that use their memory again.
#pragma once

#include "TarnwickPlatform/Codecs/PixelFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// Where the planes of a picture lie in one piece of memory: from the top row down.
struct PixelLayout {
    struct Plane {
        std::int64_t offset = 0;      // bytes from the beginning, a multiple of 256
        std::int64_t bytesPerRow = 0; // a multiple of 64, at least a row's samples
        std::int64_t width = 0;       // samples
        std::int64_t height = 0;      // rows
    };
    std::array<Plane, 4> planes{}; // as many as the format has; the others are empty
    std::int64_t bytes = 0;        // in all, a multiple of 256
};

PixelLayout pixelLayout(PixelFormat format, std::int64_t width, std::int64_t height);

// Memory that something else owns, a GPU's buffer perhaps.
struct PixelMemory {
    std::byte* address = nullptr; // a multiple of 16
    std::shared_ptr<void> owner;  // keeps the memory; a caller may cast it back to what it is
};

// Gives `bytes` bytes, or nothing. Is called by the thread that calls PixelBufferPool::take.
using PixelAllocator = std::function<std::optional<PixelMemory>(std::size_t bytes)>;

// A picture. Who has it alone may write it; once appended it is read by the writer's threads.
// Shared, because the caller and the encoder's delay line both hold it, and neither outlives the
// other for certain.
class PixelBuffer {
  public:
    PixelBuffer(PixelFormat format, std::int64_t width, std::int64_t height, PixelMemory memory);

    PixelFormat format() const { return format_; }
    std::int64_t width() const { return width_; }
    std::int64_t height() const { return height_; }
    const PixelLayout& layout() const { return layout_; }

    // The beginning of a plane; its rows are layout().planes[plane].bytesPerRow apart.
    std::byte* plane(std::size_t index) const;

    // What owns the memory, as the allocator gave it.
    const std::shared_ptr<void>& memory() const { return memory_.owner; }

  private:
    PixelFormat format_;
    std::int64_t width_;
    std::int64_t height_;
    PixelLayout layout_;
    PixelMemory memory_;
};

// Hands out buffers of one kind, `capacity` at a time at most. A buffer comes back, from any
// thread, when its last owner lets go of it, and may outlive the pool. Any thread may take.
class PixelBufferPool {
  public:
    PixelBufferPool(PixelFormat format, std::int64_t width, std::int64_t height,
                    std::int64_t capacity, PixelAllocator allocate = {});
    ~PixelBufferPool();

    PixelFormat format() const;

    // A buffer whose content is left from its last use, or null: when `capacity` of them are out,
    // or there is no memory.
    std::shared_ptr<PixelBuffer> take();

  private:
    struct Store;
    std::shared_ptr<Store> store; // shared with the buffers that are out, which return to it
};

} // namespace tarnwick
