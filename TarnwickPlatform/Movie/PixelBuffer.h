// Pictures on their way into a movie, and pools that reuse their memory.
#pragma once

#include "TarnwickPlatform/Codecs/PixelFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// The places of a picture's planes in one block of memory, top row first.
struct PixelLayout {
    struct Plane {
        std::int64_t offset = 0;      // bytes from the start, a multiple of 256
        std::int64_t bytesPerRow = 0; // a multiple of 64, at least a row's samples
        std::int64_t width = 0;       // samples
        std::int64_t height = 0;      // rows
    };
    std::array<Plane, 4> planes{}; // those that the format does not have are empty
    std::int64_t bytes = 0;        // of the block, a multiple of 256
};

// The layout of a picture of `width` x `height` pixels, each at least 1.
PixelLayout pixelLayout(PixelFormat format, std::int64_t width, std::int64_t height);

// Memory with an owner, for instance a GPU's buffer.
struct PixelMemory {
    std::byte* address = nullptr; // a multiple of 16
    std::shared_ptr<void> owner;  // keeps the memory; the caller that made it may cast it back
};

// Allocates `bytes` bytes; absent if there is no memory. Called by the thread that calls
// PixelBufferPool::take.
using PixelAllocator = std::function<std::optional<PixelMemory>(std::size_t bytes)>;

// A picture. Its only owner may write to it; after it is appended, the writer's threads read it.
// Shared, because the caller and the encoder both hold it and either may live longer.
class PixelBuffer {
  public:
    // `memory` has pixelLayout(format, width, height).bytes bytes.
    PixelBuffer(PixelFormat format, std::int64_t width, std::int64_t height, PixelMemory memory);

    PixelFormat format() const { return format_; }
    std::int64_t width() const { return width_; }
    std::int64_t height() const { return height_; }
    const PixelLayout& layout() const { return layout_; }

    // The first byte of a plane; its rows are layout().planes[index].bytesPerRow apart.
    std::byte* plane(std::size_t index) const;

    // The owner of the memory, as the allocator gave it.
    const std::shared_ptr<void>& memory() const { return memory_.owner; }

  private:
    PixelFormat format_;
    std::int64_t width_;
    std::int64_t height_;
    PixelLayout layout_;
    PixelMemory memory_;
};

// Hands out buffers of one format and size, at most `capacity` at a time. A buffer returns when its
// last owner releases it, on any thread, and may outlive the pool. Any thread may take.
class PixelBufferPool {
  public:
    // Memory is allocated as buffers are taken; default: by the heap, filled with zeros.
    PixelBufferPool(PixelFormat format, std::int64_t width, std::int64_t height,
                    std::int64_t capacity, PixelAllocator allocate = {});
    ~PixelBufferPool();

    PixelFormat format() const;

    // The buffers that are taken from now on have new memory, of `allocate`. Those that are out
    // keep theirs until they are released.
    void renew(PixelAllocator allocate);

    // A buffer with the content of its last use. Null if `capacity` buffers are out or there is no
    // memory.
    std::shared_ptr<PixelBuffer> take();

  private:
    struct Store;
    std::shared_ptr<Store> store; // shared with the buffers that are out
};

} // namespace tarnwick
