// Queues, command buffers and encoders. One thread at a time may use a queue and the objects that
// it made. Implemented in Commands/: CommandQueue.cpp, CommandBuffer.cpp, RenderCommandEncoder.cpp,
// PatchDrawing.cpp, ComputeCommandEncoder.cpp, BlitCommandEncoder.cpp.
#pragma once

#include "TarnwickGPU/CommandRecords.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/SamplerState.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace tarnwick::gpu {

class Drawable;
struct CommandBufferParts;
struct QueueParts;

// Encoders are handles of their command buffer's state: cheap, and valid until endEncoding().
// setXxxBytes copies 1 to 65536 bytes. Indices are those of the shader's [[buffer(n)]] (0 to 30),
// [[texture(n)]] (0 to 127) and [[sampler(n)]] (0 to 15). A resource that is not bound reads as
// zero. A texture of another shape or component type than the shader's also reads as zero. A
// sampler that is not bound filters nearest and clamps to the edge. The buffers of a vertex
// descriptor are the vertex buffers of the same index. Clip space has y up and pixel
// coordinates have y down, as in Metal; clockwise triangles face front.
class RenderCommandEncoder {
  public:
    explicit RenderCommandEncoder(CommandBufferParts& parts) : parts_(&parts) {}
    void setRenderPipelineState(const RenderPipelineState& state);
    void setDepthStencilState(const DepthStencilState& state);
    void setViewport(const Viewport& viewport);        // default: the whole target
    void setScissorRect(const ScissorRect& rectangle); // default: the whole target
    void setBlendColor(float red, float green, float blue, float alpha); // default: zeros
    void setVertexBytes(const void* bytes, std::size_t length, std::uint32_t index);
    void setVertexBuffer(const Buffer& buffer, std::size_t offset, std::uint32_t index);
    void setVertexTexture(const Texture* texture, std::uint32_t index);
    void setVertexSamplerState(const SamplerState* state, std::uint32_t index);
    void setFragmentBytes(const void* bytes, std::size_t length, std::uint32_t index);
    void setFragmentBuffer(const Buffer& buffer, std::size_t offset, std::uint32_t index);
    void setFragmentTexture(const Texture* texture, std::uint32_t index);
    void setFragmentSamplerState(const SamplerState* state, std::uint32_t index);
    // Points have the base instance 0, unless the pipeline has a vertex descriptor.
    void drawPrimitives(PrimitiveType type, std::uint32_t vertexStart, std::uint32_t vertexCount,
                        std::uint32_t instanceCount = 1, std::uint32_t baseInstance = 0);
    // The vertices whose numbers are in `indexBuffer` from a byte on, which is a multiple of an
    // index' size. In a strip, the greatest index of the type ends a strip. Points are the
    // device's own: on the packaged CPU driver of at most 255 pixels.
    void drawIndexedPrimitives(PrimitiveType type, std::uint32_t indexCount, IndexType indexType,
                               const Buffer& indexBuffer, std::size_t indexBufferOffset,
                               std::uint32_t instanceCount = 1, std::int32_t baseVertex = 0,
                               std::uint32_t baseInstance = 0);

    // The factors of the patches: MTLTriangleTessellationFactorsHalf or
    // MTLQuadTessellationFactorsHalf, one after the other. `instanceStride`: bytes, a multiple of
    // 4, for step functions of instances. Default: zeros, with which nothing is drawn.
    void setTessellationFactorBuffer(const Buffer& buffer, std::size_t offset,
                                     std::size_t instanceStride);
    void setTessellationFactorScale(float scale); // default: 1
    // Draws patches with a pipeline of a post-tessellation vertex function. Patch n has the control
    // points n * controlPoints and those after it. The number of each patch is its place in the
    // draw from patchStart on; with an index buffer of 32-bit numbers, the number there.
    void drawPatches(std::uint32_t controlPoints, std::uint32_t patchStart,
                     std::uint32_t patchCount, const Buffer* patchIndexBuffer = nullptr,
                     std::size_t patchIndexBufferOffset = 0, std::uint32_t instanceCount = 1,
                     std::uint32_t baseInstance = 0);
    // The control points are numbers in `controlPointIndexBuffer`, of the pipeline's index type.
    void drawIndexedPatches(std::uint32_t controlPoints, std::uint32_t patchStart,
                            std::uint32_t patchCount, const Buffer* patchIndexBuffer,
                            std::size_t patchIndexBufferOffset,
                            const Buffer& controlPointIndexBuffer,
                            std::size_t controlPointIndexBufferOffset,
                            std::uint32_t instanceCount = 1, std::uint32_t baseInstance = 0);
    void endEncoding();

  private:
    CommandBufferParts* parts_;
};

class ComputeCommandEncoder {
  public:
    explicit ComputeCommandEncoder(CommandBufferParts& parts) : parts_(&parts) {}
    void setComputePipelineState(const ComputePipelineState& state);
    void setBytes(const void* bytes, std::size_t length, std::uint32_t index);
    void setBuffer(const Buffer& buffer, std::size_t offset, std::uint32_t index);
    void setTexture(const Texture* texture, std::uint32_t index);
    // The bytes of threadgroup memory at the kernel's pointer [[threadgroup(index)]], index in [0,
    // 30]. Default: the pointers without a length share 16 KB.
    void setThreadgroupMemoryLength(std::uint32_t bytes, std::uint32_t index);
    void setSamplerState(const SamplerState* state, std::uint32_t index);
    // The elements of [[stage_in]] that a kernel reads, in elements: the thread at (0, 0, 0) reads
    // that at the region's origin. `[[grid_origin]]` and `[[grid_size]]` are the region's. Default:
    // from (0, 0, 0), of the size of the grid.
    void setStageInRegion(const Region& region);
    // Runs exactly `threads` threads, in threadgroups of `perThreadgroup`.
    void dispatchThreads(Size threads, Size perThreadgroup);
    void endEncoding();

  private:
    CommandBufferParts* parts_;
};

class BlitCommandEncoder {
  public:
    explicit BlitCommandEncoder(CommandBufferParts& parts) : parts_(&parts) {}
    void copy(const Texture& source, const Region& region, const Texture& destination,
              std::uint32_t destinationX, std::uint32_t destinationY);
    // Fills each level except the first from the level before it. Requires several levels and a
    // format that can be filtered.
    void generateMipmaps(const Texture& texture);
    void endEncoding();

  private:
    CommandBufferParts* parts_;
};

// Textures and buffers used while encoding must live until commit(), and may be destroyed after it.
class CommandBuffer {
  public:
    explicit CommandBuffer(std::unique_ptr<CommandBufferParts> parts);
    ~CommandBuffer();
    CommandBuffer(CommandBuffer&&) noexcept;
    CommandBuffer& operator=(CommandBuffer&&) noexcept;

    // Nothing if the device is lost or out of memory. One encoder at a time.
    std::optional<RenderCommandEncoder> renderCommandEncoder(const RenderPassDescriptor&);
    std::optional<ComputeCommandEncoder> computeCommandEncoder();
    std::optional<BlitCommandEncoder> blitCommandEncoder();

    // Presents the drawable once the GPU has finished this command buffer. Before commit().
    void present(const Drawable& drawable);
    // Submits the commands: whole if their work is known to be quick, otherwise in pieces of about
    // 50 ms, one after the other, by a thread of the device (the environment variable
    // TARNWICK_PIECES=N: all work in pieces of about N pixels, vertices or threads, for tests). A
    // command buffer that presents is not divided, and waits here until the pieces of those before
    // it are submitted; otherwise commit() does not block.
    void commit();
    void waitUntilCompleted(); // blocks
    // Blocks for at most `seconds`; false if the GPU has not finished by then.
    bool waitUntilCompleted(double seconds);
    CommandBufferStatus status() const;

    // Leaves out the draws and kernels that the GPU has not begun. The command buffer completes
    // soon; what it would have drawn and stored is undefined. After commit().
    void abandon();

    // Whether an invocation exceeded its loop budget. May be false until the buffer has completed.
    bool hitLoopBudget() const;

  private:
    std::unique_ptr<CommandBufferParts> parts_;
};

class CommandQueue {
  public:
    explicit CommandQueue(std::shared_ptr<QueueParts> parts);
    ~CommandQueue();
    CommandQueue(const CommandQueue&) = delete;
    CommandQueue& operator=(const CommandQueue&) = delete;
    // Nothing if the device is lost or out of memory. Blocks while 64 command buffers are in
    // flight.
    std::optional<CommandBuffer> commandBuffer();

  private:
    std::shared_ptr<QueueParts> parts_; // shared with its command buffers, which may outlive it
};

} // namespace tarnwick::gpu
