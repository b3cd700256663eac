#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Commands/CommandBufferParts.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/ResourceBinding.h"

#include <array>
#include <utility>

namespace tarnwick::gpu {

namespace {

std::uint32_t groups(std::uint32_t threads, std::uint32_t perGroup) {
    return threads / perGroup + (threads % perGroup != 0 ? 1 : 0);
}

bool fits(const Size& threadgroup, const VkPhysicalDeviceLimits& limits) {
    const auto& most = limits.maxComputeWorkGroupSize;
    return threadgroup.width > 0 && threadgroup.height > 0 && threadgroup.depth > 0 &&
           threadgroup.width <= most[0] && threadgroup.height <= most[1] &&
           threadgroup.depth <= most[2] &&
           std::uint64_t{threadgroup.width} * threadgroup.height * threadgroup.depth <=
               limits.maxComputeWorkGroupInvocations;
}

// The push constants (GridMember): members of three words, each at a multiple of four words.
struct GridRecord {
    std::array<std::uint32_t, 4> size{}, originOfStageIn{};
    std::array<std::uint32_t, 3> sizeOfStageIn{};
};
static_assert(sizeof(GridRecord) == msl::kernelPushConstantBytes);

GridRecord gridOf(const Size& threads, const std::optional<Region>& stageIn) {
    GridRecord grid{.size = {threads.width, threads.height, threads.depth},
                    .sizeOfStageIn = {threads.width, threads.height, threads.depth}};
    if (stageIn) {
        grid.originOfStageIn = {stageIn->x, stageIn->y, stageIn->z};
        grid.sizeOfStageIn = {stageIn->width, stageIn->height, stageIn->depth};
    }
    return grid;
}

// The dispatches of one encoder run one after the other, and each reads the stores of those before
// it, as in Metal.
void waitForWrites(CommandBufferParts& parts) {
    if (!std::exchange(parts.wroteMemory, false))
        return;
    parts.barriers.afterWork(VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT,
                             VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT);
    parts.barriers.flush(*parts.stream);
}

} // namespace

std::optional<ComputeCommandEncoder> CommandBuffer::computeCommandEncoder() {
    if (parts_->device->submissions.isLost() || parts_->failed)
        return std::nullopt;
    parts_->startEncoding(Encoding::compute);
    parts_->threadgroupLengths = {};
    parts_->stageInRegion.reset();
    parts_->barriers.flush(*parts_->stream);
    return ComputeCommandEncoder(*parts_);
}

void ComputeCommandEncoder::setComputePipelineState(const ComputePipelineState& state) {
    parts_->computePipeline = &state.parts();
}

void ComputeCommandEncoder::setBytes(const void* bytes, std::size_t length, std::uint32_t index) {
    parts_->setBytes(TableIndex::vertexOrKernel, bytes, length, index);
}

void ComputeCommandEncoder::setBuffer(const Buffer& buffer, std::size_t offset,
                                      std::uint32_t index) {
    parts_->setBuffer(TableIndex::vertexOrKernel, buffer, offset, index);
}

void ComputeCommandEncoder::setTexture(const Texture* texture, std::uint32_t index) {
    parts_->setTexture(TableIndex::vertexOrKernel, texture, index);
}

void ComputeCommandEncoder::setThreadgroupMemoryLength(std::uint32_t bytes, std::uint32_t index) {
    precondition(index < mostThreadgroupPointers, "an index of threadgroup memory is in [0, 30]",
                 "index", index);
    parts_->threadgroupLengths[index] = bytes;
}

void ComputeCommandEncoder::setSamplerState(const SamplerState* state, std::uint32_t index) {
    parts_->setSampler(TableIndex::vertexOrKernel, state, index);
}

void ComputeCommandEncoder::setStageInRegion(const Region& region) {
    parts_->stageInRegion = region;
}

void ComputeCommandEncoder::dispatchThreads(Size threads, Size perThreadgroup) {
    precondition(parts_->encoding == Encoding::compute, "a dispatch is in an open compute encoder",
                 "open encoder", nameOf(parts_->encoding));
    precondition(parts_->computePipeline, "a dispatch follows setComputePipelineState()");
    const VkPhysicalDeviceLimits& limits = parts_->device->record.limits;
    precondition(fits(perThreadgroup, limits), "the device supports the size of the threadgroup",
                 "width", perThreadgroup.width, "height", perThreadgroup.height, "depth",
                 perThreadgroup.depth, "maximum of threads", limits.maxComputeWorkGroupInvocations);
    if (threads.width == 0 || threads.height == 0 || threads.depth == 0)
        return;
    const ComputePipelineParts& kernel = *parts_->computePipeline;
    ThreadgroupShape shape{.threads = perThreadgroup};
    for (std::uint32_t index : kernel.kernel->threadgroupPointers)
        shape.lengths[index] = parts_->threadgroupLengths[index];
    const VkPipeline pipeline = kernel.pipelineFor(shape);
    const std::array counts{groups(threads.width, perThreadgroup.width),
                            groups(threads.height, perThreadgroup.height),
                            groups(threads.depth, perThreadgroup.depth)};
    for (std::size_t axis = 0; axis < counts.size(); ++axis)
        precondition(counts[axis] <= limits.maxComputeWorkGroupCount[axis],
                     "the device supports the number of threadgroups", "threadgroups", counts[axis],
                     "maximum", limits.maxComputeWorkGroupCount[axis]);
    if (!pipeline) {
        parts_->failed = true;
        return;
    }
    waitForWrites(*parts_);
    if (parts_->boundPipeline != pipeline) {
        parts_->stream->add(command::BindPipeline{VK_PIPELINE_BIND_POINT_COMPUTE, pipeline});
        parts_->boundPipeline = pipeline;
        parts_->resourcesChanged = true;
    }
    if (std::exchange(parts_->resourcesChanged, false) || kernel.layout.reportsLoops)
        bindResources(*parts_, kernel.layout, VK_PIPELINE_BIND_POINT_COMPUTE);
    const GridRecord grid = gridOf(threads, parts_->stageInRegion);
    CommandStream& stream = *parts_->stream;
    stream.pushConstants(kernel.layout.pipelineLayout, VK_SHADER_STAGE_COMPUTE_BIT,
                         std::as_bytes(std::span(&grid, 1)));
    stream.add(
        command::Dispatch{stream.traitsIndex(kernel.traits),
                          {},
                          counts,
                          perThreadgroup.width * perThreadgroup.height * perThreadgroup.depth});
    parts_->wroteMemory = kernel.layout.writesMemory;
}

void ComputeCommandEncoder::endEncoding() {
    parts_->endEncoding(Encoding::compute);
    parts_->barriers.afterWork(VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT,
                               VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT);
}

} // namespace tarnwick::gpu
