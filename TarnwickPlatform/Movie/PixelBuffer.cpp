#include "TarnwickPlatform/Movie/PixelBuffer.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

namespace tarnwick {

namespace {

std::int64_t roundedUp(std::int64_t value, std::int64_t step) {
    return (value + step - 1) / step * step;
}

constexpr std::size_t heapAlignment = 256;

std::optional<PixelMemory> fromHeap(std::size_t bytes) {
    auto* address = static_cast<std::byte*>(std::aligned_alloc(heapAlignment, bytes));
    if (!address)
        return std::nullopt;
    std::memset(address, 0, bytes);
    return PixelMemory{address, std::shared_ptr<void>(address, std::free)};
}

} // namespace

PixelLayout pixelLayout(PixelFormat format, std::int64_t width, std::int64_t height) {
    PixelLayout layout;
    std::size_t index = 0;
    for (const PlaneShape& shape : planeShapes(format)) {
        PixelLayout::Plane& plane = layout.planes[index++];
        plane.offset = layout.bytes;
        plane.width = (width + shape.across - 1) / shape.across;
        plane.height = (height + shape.down - 1) / shape.down;
        plane.bytesPerRow = roundedUp(plane.width * shape.bytesPerSample, 64);
        layout.bytes += roundedUp(plane.bytesPerRow * plane.height, 256);
    }
    return layout;
}

PixelBuffer::PixelBuffer(PixelFormat format, std::int64_t width, std::int64_t height,
                         PixelMemory memory)
    : format_(format), width_(width), height_(height), layout_(pixelLayout(format, width, height)),
      memory_(std::move(memory)) {}

std::byte* PixelBuffer::plane(std::size_t index) const {
    return memory_.address + layout_.planes[index].offset;
}

// The unused memory. Buffers that are out hold the store, so it may outlive the pool.
struct PixelBufferPool::Store {
    PixelFormat format;
    std::int64_t width;
    std::int64_t height;
    std::int64_t capacity;
    PixelAllocator allocate;

    std::mutex mutex; // guards the rest, and `allocate`
    std::int64_t out = 0;
    std::int64_t generation = 0; // of the memory
    std::vector<PixelMemory> idle{};

    struct Taken {
        PixelMemory memory;
        std::int64_t generation;
    };
    std::optional<Taken> takeMemory();
    void putBack(Taken taken);
};

std::optional<PixelBufferPool::Store::Taken> PixelBufferPool::Store::takeMemory() {
    std::lock_guard lock(mutex);
    if (out >= capacity)
        return std::nullopt;
    std::optional<PixelMemory> memory;
    if (idle.empty()) {
        memory = allocate(static_cast<std::size_t>(pixelLayout(format, width, height).bytes));
    } else {
        memory = std::move(idle.back());
        idle.pop_back();
    }
    if (!memory)
        return std::nullopt;
    ++out;
    return Taken{*std::move(memory), generation};
}

void PixelBufferPool::Store::putBack(Taken taken) {
    std::lock_guard lock(mutex);
    --out;
    if (taken.generation == generation)
        idle.push_back(std::move(taken.memory));
}

PixelBufferPool::PixelBufferPool(PixelFormat format, std::int64_t width, std::int64_t height,
                                 std::int64_t capacity, PixelAllocator allocate)
    : store(std::make_shared<Store>()) {
    store->format = format;
    store->width = width;
    store->height = height;
    store->capacity = capacity;
    store->allocate = allocate ? std::move(allocate) : PixelAllocator(fromHeap);
}

PixelBufferPool::~PixelBufferPool() = default;

PixelFormat PixelBufferPool::format() const {
    return store->format;
}

std::shared_ptr<PixelBuffer> PixelBufferPool::take() {
    std::optional<Store::Taken> taken = store->takeMemory();
    if (!taken)
        return nullptr;
    Store::Taken kept = *taken;
    auto giveBack = [store = store, kept = std::move(kept)](PixelBuffer* buffer) {
        delete buffer;
        store->putBack(kept);
    };
    return std::shared_ptr<PixelBuffer>(
        new PixelBuffer(store->format, store->width, store->height, std::move(taken->memory)),
        std::move(giveBack));
}

void PixelBufferPool::renew(PixelAllocator allocate) {
    std::vector<PixelMemory> dropped; // destroyed without the lock
    std::lock_guard lock(store->mutex);
    store->allocate = allocate ? std::move(allocate) : PixelAllocator(fromHeap);
    ++store->generation;
    dropped.swap(store->idle);
}

} // namespace tarnwick
