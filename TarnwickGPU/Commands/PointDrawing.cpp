#include "TarnwickGPU/Commands/PointDrawing.h"

#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Commands/Rendering.h"
#include "TarnwickGPU/Commands/ResourceBinding.h"
#include "TarnwickGPU/Points/PointForms.h"
#include "TarnwickGPU/Points/PointKernel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace tarnwick::gpu {

namespace {

constexpr std::uint32_t verticesOfAQuad = 6;
constexpr float anySize = std::numeric_limits<float>::max();
constexpr float margin =
    256; // pixels around the picture in which a point's centre may be and still show

// Pixels: the largest point that a kernel adds itself. Drawing larger ones takes less time.
constexpr float largestSplat = 3;
// With more pixels per point, adding up the sums takes longer than drawing the points.
constexpr std::uint64_t pixelsAPoint = 16;

constexpr auto strideOfDraws = static_cast<std::uint32_t>(sizeof(VkDrawIndirectCommand));

struct PointDraw {
    std::uint32_t start, count, instances;
};

std::uint32_t traitsOf(CommandBufferParts& parts) {
    return parts.stream->traitsIndex(parts.renderPipeline->traits);
}

PointRecord recordOf(const CommandBufferParts& parts, const PointDraw& draw) {
    const Viewport& viewport = parts.viewport;
    const ScissorRect& scissor = parts.scissor;
    auto pair = [](auto x, auto y) { return Pair{static_cast<float>(x), static_cast<float>(y)}; };
    PointRecord record;
    record.half = pair(viewport.width / 2, -viewport.height / 2);
    record.centre =
        pair(viewport.originX + viewport.width / 2, viewport.originY + viewport.height / 2);
    for (std::size_t axis = 0; axis < 2; ++axis)
        record.reach[axis] = 1 + margin / std::abs(record.half[axis]);
    record.depth = pair(viewport.znear, viewport.zfar - viewport.znear);
    record.from = pair(scissor.x, scissor.y);
    record.to = pair(scissor.x + scissor.width, scissor.y + scissor.height);
    record.firstVertex = draw.start;
    record.count = draw.count;
    record.rowPixels = targetExtent(parts.pass).width;
    return record;
}

// The number of fractional bits with which the sum of all points on one pixel, at most 2^17 each
// (PointKernel.cpp), fits in 63 bits.
Pair roundingFor(std::uint32_t count) {
    const int bits = 62 - 17 - std::bit_width(count);
    return {std::ldexp(1.0f, bits), std::ldexp(1.0f, -bits)};
}

void pushRecord(CommandBufferParts& parts, const BindingLayout& layout, VkShaderStageFlags stages,
                const PointRecord& record) {
    parts.stream->pushConstants(layout.pipelineLayout, stages,
                                std::as_bytes(std::span(&record, 1)));
}

// The viewport with the margin around it, so that the centre of every point that shows is inside.
// The scissor still limits the drawing.
Viewport widened(const Viewport& viewport) {
    return {.originX = viewport.originX - margin,
            .originY = viewport.originY - margin,
            .width = viewport.width + 2 * margin,
            .height = viewport.height + 2 * margin,
            .znear = viewport.znear,
            .zfar = viewport.zfar};
}

// Prepares a draw of the device's own points: of sizes above sizes[0] and up to sizes[1].
void readyPoints(CommandBufferParts& parts, VkPipeline points, PointRecord& record, Pair sizes) {
    const RenderPipelineParts& pipeline = *parts.renderPipeline;
    openRendering(parts);
    bindPipeline(parts, points);
    readyDraw(parts, pipeline.drawing.layout, PrimitiveType::point);
    record.sizes = sizes;
    if (parts.device->record.points.dropsOutside) {
        const Viewport wide = widened(parts.viewport);
        record.scale = {static_cast<float>(parts.viewport.width / wide.width),
                        static_cast<float>(parts.viewport.height / wide.height)};
        encodeViewport(parts, wide);
    }
    pushRecord(parts, pipeline.drawing.layout, VK_SHADER_STAGE_VERTEX_BIT, record);
}

void endPoints(CommandBufferParts& parts) {
    if (parts.device->record.points.dropsOutside)
        encodeViewport(parts, parts.viewport);
}

void readyQuads(CommandBufferParts& parts, VkPipeline quads, PointRecord& record, Pair sizes) {
    const RenderPipelineParts& pipeline = *parts.renderPipeline;
    openRendering(parts);
    bindPipeline(parts, quads);
    readyDraw(parts, pipeline.drawing.layout, PrimitiveType::triangle);
    record.sizes = sizes;
    pushRecord(parts, pipeline.drawing.layout, VK_SHADER_STAGE_VERTEX_BIT, record);
}

void drawQuads(CommandBufferParts& parts, VkPipeline quads, const PointDraw& draw) {
    PointRecord record = recordOf(parts, draw);
    readyQuads(parts, quads, record, {0, anySize});
    parts.stream->add(command::Draw{traitsOf(parts), draw.count * verticesOfAQuad, draw.instances,
                                    draw.start * verticesOfAQuad, 0});
}

// The indirect draws. A kernel sets their instance counts, which are 0 at first.
struct BlockDraws {
    BytesRing::Slice slice;
    std::uint32_t blocks = 0;

    VkDeviceSize offset(std::uint32_t draw) const {
        return slice.offset + draw * sizeof(VkDrawIndirectCommand);
    }
};

BlockDraws blockDraws(CommandBufferParts& parts, const PointDraw& draw) {
    BlockDraws draws{.blocks = (draw.count - 1) / pointsABlock + 1};
    const VkDeviceSize size = (firstBlockDraw + 2 * draws.blocks) * sizeof(VkDrawIndirectCommand);
    draws.slice = parts.ring.take(parts.device->record, size);
    if (!draws.slice.buffer)
        return draws;
    auto* commands = reinterpret_cast<VkDrawIndirectCommand*>(draws.slice.bytes);
    commands[sumsDraw] = {.vertexCount = 3};
    commands += firstBlockDraw;
    for (const std::uint32_t vertices : {1u, verticesOfAQuad})
        for (std::uint32_t block = 0; block < draws.blocks; ++block) {
            const std::uint32_t first = block * pointsABlock;
            const std::uint32_t count = std::min(pointsABlock, draw.count - first);
            *commands++ = {.vertexCount = count * vertices,
                           .instanceCount = 0,
                           .firstVertex = (draw.start + first) * vertices,
                           .firstInstance = 0};
        }
    parts.ownBuffers[drawsBuffer] = {draws.slice.buffer, draws.slice.offset, size};
    return draws;
}

void drawBlocks(CommandBufferParts& parts, const BlockDraws& draws, std::uint32_t form) {
    const std::uint32_t verticesOfAPoint = form == 0 ? 1 : verticesOfAQuad;
    parts.stream->add(command::DrawIndirect{traitsOf(parts), draws.blocks, strideOfDraws,
                                            draws.blocks * pointsABlock * verticesOfAPoint,
                                            draws.slice.buffer,
                                            draws.offset(firstBlockDraw + form * draws.blocks)});
}

// Takes the sums if adding points is faster than drawing them.
bool takeSums(CommandBufferParts& parts, const PointDraw& draw) {
    const VkExtent2D target = targetExtent(parts.pass);
    const std::uint64_t pixels = std::uint64_t{target.width} * target.height;
    if (!parts.renderPipeline->points.splatting.pipeline || !parts.device->record.points.splats ||
        draw.count < pixels / pixelsAPoint)
        return false;
    parts.sums = parts.device->pointSums.sums(pixels * bytesOfASum);
    if (!parts.sums)
        return false;
    parts.ownBuffers[sumsBuffer] = {parts.sums->memory.buffer, 0, pixels * bytesOfASum};
    return true;
}

void runKernel(CommandBufferParts& parts, const PipelineWithLayout& kernel,
               const PointRecord& record) {
    breakRendering(parts);
    parts.stream->add(command::BindPipeline{VK_PIPELINE_BIND_POINT_COMPUTE, kernel.pipeline});
    bindResources(parts, kernel.layout, VK_PIPELINE_BIND_POINT_COMPUTE);
    pushRecord(parts, kernel.layout, VK_SHADER_STAGE_COMPUTE_BIT, record);
    const std::uint32_t groups = (record.count - 1) / pointsAThreadgroup + 1;
    parts.stream->add(command::Dispatch{traitsOf(parts), {}, {groups, 1, 1}, pointsAThreadgroup});
    waitForAll(parts);
}

void drawSums(CommandBufferParts& parts, const BlockDraws& draws, const PointRecord& record) {
    const PointPipelines& points = parts.renderPipeline->points;
    const VkExtent2D target = targetExtent(parts.pass);
    openRendering(parts);
    bindPipeline(parts, points.sums.pipeline);
    readyDraw(parts, points.sums.layout, PrimitiveType::triangle);
    pushRecord(parts, points.sums.layout, VK_SHADER_STAGE_FRAGMENT_BIT, record);
    encodeViewport(parts, {.width = static_cast<double>(target.width),
                           .height = static_cast<double>(target.height)});
    parts.stream->add(command::DrawIndirect{traitsOf(parts), 1, strideOfDraws, 3,
                                            draws.slice.buffer, draws.offset(sumsDraw)});
    encodeViewport(parts, parts.viewport);
}

void drawSorted(CommandBufferParts& parts, const PointDraw& draw) {
    const PointPipelines& points = parts.renderPipeline->points;
    const float largest = std::min(parts.device->record.points.largest, largestPoint);
    PointRecord record = recordOf(parts, draw);
    const BlockDraws draws = blockDraws(parts, draw);
    if (!draws.slice.buffer) {
        parts.failed = true;
        return;
    }
    const bool splats = takeSums(parts, draw);
    const float splatted = splats ? largestSplat : 0;
    record.sizes = {splatted, largest};
    record.rounding = roundingFor(draw.count);
    runKernel(parts, splats ? points.splatting : points.sorting, record);
    if (splats)
        drawSums(parts, draws, record);
    readyPoints(parts, parts.renderPipeline->drawing.pipeline, record, {splatted, largest});
    drawBlocks(parts, draws, 0);
    endPoints(parts);
    if (largest >= largestPoint)
        return;
    readyQuads(parts, points.quads, record, {largest, anySize});
    drawBlocks(parts, draws, 1);
}

} // namespace

void drawPoints(CommandBufferParts& parts, std::uint32_t vertexStart, std::uint32_t vertexCount,
                std::uint32_t instanceCount) {
    const RenderPipelineParts& pipeline = *parts.renderPipeline;
    const PointDraw draw{vertexStart, vertexCount, instanceCount};
    switch (pipeline.points.way) {
    case PointWay::asGiven:
        return;
    case PointWay::points: {
        PointRecord record = recordOf(parts, draw);
        readyPoints(parts, pipeline.drawing.pipeline, record, {0, anySize});
        parts.stream->add(
            command::Draw{traitsOf(parts), vertexCount, instanceCount, vertexStart, 0});
        return endPoints(parts);
    }
    case PointWay::quads:
        return drawQuads(parts, pipeline.drawing.pipeline, draw);
    case PointWay::sorted:
        return instanceCount == 1 ? drawSorted(parts, draw)
                                  : drawQuads(parts, pipeline.points.quads, draw);
    }
}

void drawIndexedPoints(CommandBufferParts& parts, std::uint32_t indexCount, IndexType indexType,
                       const Buffer& indices, std::size_t offset, std::uint32_t instanceCount,
                       std::int32_t baseVertex) {
    const RenderPipelineParts& pipeline = *parts.renderPipeline;
    const VkPipeline points = pipeline.points.way == PointWay::quads
                                  ? pipeline.points.indexed.pipeline(*parts.device)
                                  : pipeline.drawing.pipeline;
    if (!points) {
        parts.failed = true;
        return;
    }
    PointRecord record = recordOf(parts, {0, indexCount, instanceCount});
    readyPoints(parts, points, record, {0, anySize});
    bindIndices(parts, indices, offset, indexType, indexCount);
    parts.stream->add(
        command::DrawIndexed{traitsOf(parts), indexCount, instanceCount, 0, baseVertex, 0});
    endPoints(parts);
}

} // namespace tarnwick::gpu
