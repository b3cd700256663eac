#include "TarnwickGPU/Commands/Division.h"

#include <algorithm>

namespace tarnwick::gpu {

namespace {

// With fewer vertices, running them again for each rectangle costs little.
constexpr std::uint64_t fewVertices = 16384;

std::uint32_t narrow(std::uint64_t value) {
    return static_cast<std::uint32_t>(value);
}

// The vertices of a primitive; 0 for primitives that share vertices, and for patches.
std::uint32_t verticesOf(VkPrimitiveTopology topology) {
    switch (topology) {
    case VK_PRIMITIVE_TOPOLOGY_POINT_LIST:
        return 1;
    case VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST:
        return 3;
    default:
        return 0;
    }
}

VkRect2D intersection(const VkRect2D& scissor, const VkExtent2D& target) {
    const auto clamped = [](std::int64_t value, std::uint32_t most) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 0, most));
    };
    const std::int32_t left = clamped(scissor.offset.x, target.width);
    const std::int32_t top = clamped(scissor.offset.y, target.height);
    const std::int32_t right =
        clamped(std::int64_t{scissor.offset.x} + scissor.extent.width, target.width);
    const std::int32_t bottom =
        clamped(std::int64_t{scissor.offset.y} + scissor.extent.height, target.height);
    return {{left, top},
            {static_cast<std::uint32_t>(std::max(right - left, 0)),
             static_cast<std::uint32_t>(std::max(bottom - top, 0))}};
}

// The tiles that a range of pixels touches: the first, and their number.
struct Tiles {
    std::uint32_t first, count;
};

Tiles tilesOf(std::int32_t offset, std::uint32_t extent, std::uint32_t tile) {
    const auto begin = static_cast<std::uint32_t>(offset);
    const std::uint32_t first = begin / tile;
    return {first, extent == 0 ? 0 : (begin + extent - 1) / tile - first + 1};
}

} // namespace

std::optional<Division> Division::make(const Command& command, const CommandStream& stream,
                                       const DrawState& state) {
    Division division(command, state);
    if (const auto* draw = std::get_if<command::Draw>(&command)) {
        division.divideDraw(*stream.traits[draw->traits], draw->vertices, draw->instances);
    } else if (const auto* indexed = std::get_if<command::DrawIndexed>(&command)) {
        division.divideDraw(*stream.traits[indexed->traits], indexed->indices, indexed->instances);
    } else if (const auto* indirect = std::get_if<command::DrawIndirect>(&command)) {
        const bool isSplit = indirect->draws > 1 && indirect->vertices > fewVertices;
        if (!isSplit)
            division.divideByPixels(*stream.traits[indirect->traits], indirect->vertices);
        else {
            division.way_ = Way::draws;
            division.elements_ = indirect->draws;
            division.unitsOfElement_ = indirect->vertices / indirect->draws;
        }
    } else if (const auto* dispatch = std::get_if<command::Dispatch>(&command)) {
        division.divideDispatch(*stream.traits[dispatch->traits], *dispatch);
    } else {
        return std::nullopt;
    }
    return division;
}

void Division::divideDraw(const WorkTraits& traits, std::uint64_t vertices,
                          std::uint64_t instances) {
    if (vertices * instances <= fewVertices && state_.scissorsExactly)
        return divideByPixels(traits, vertices * instances);
    const std::uint32_t primitive = verticesOf(state_.topology);
    if (instances == 1 && traits.byVertices && primitive > 0 && vertices >= primitive) {
        way_ = Way::primitives;
        elements_ = vertices / primitive;
        unitsOfElement_ = primitive;
    } else if (instances > 1 && traits.byInstances &&
               state_.topology != VK_PRIMITIVE_TOPOLOGY_PATCH_LIST) {
        way_ = Way::instances;
        elements_ = instances;
        unitsOfElement_ = vertices;
    } else {
        divideByPixels(traits, vertices * instances);
    }
}

void Division::divideByPixels(const WorkTraits& traits, std::uint64_t vertices) {
    const VkRect2D area = intersection(state_.scissor, state_.target);
    const Tiles columns = tilesOf(area.offset.x, area.extent.width, tileWidth);
    const Tiles rows = tilesOf(area.offset.y, area.extent.height, tileHeight);
    if (!traits.byPixels || !state_.scissorsExactly || columns.count == 0 || rows.count == 0) {
        unitsOfElement_ = std::max<std::uint64_t>(vertices, 1);
        return;
    }
    way_ = Way::pixels;
    unit_ = WorkUnit::pixel;
    columns_ = columns.count;
    elements_ = std::uint64_t{columns.count} * rows.count;
    unitsOfElement_ = tileWidth * tileHeight;
}

void Division::divideDispatch(const WorkTraits& traits, const command::Dispatch& dispatch) {
    unit_ = WorkUnit::thread;
    const auto& groups = dispatch.groups;
    const std::uint64_t all = std::uint64_t{groups[0]} * groups[1] * groups[2];
    axis_ = static_cast<std::size_t>(std::ranges::max_element(groups) - groups.begin());
    if (!traits.byThreadgroups) {
        unitsOfElement_ = all * dispatch.threads;
        return;
    }
    way_ = Way::threadgroups;
    elements_ = groups[axis_];
    unitsOfElement_ = all / groups[axis_] * dispatch.threads;
}

// The next rectangle of up to `count` tiles: a part of a row of tiles, or whole rows. Sets `count`
// to the tiles in it.
VkRect2D Division::rectangle(std::uint64_t& count) const {
    const VkRect2D area = intersection(state_.scissor, state_.target);
    const std::uint32_t row = narrow(done_ / columns_), column = narrow(done_ % columns_);
    std::uint32_t rows = 1, columns = columns_;
    if (column == 0 && count >= columns_)
        rows = narrow(count / columns_);
    else
        columns = narrow(std::min<std::uint64_t>(count, columns_ - column));
    const Tiles across = tilesOf(area.offset.x, area.extent.width, tileWidth);
    const Tiles down = tilesOf(area.offset.y, area.extent.height, tileHeight);
    const std::uint32_t rowsOfSquare = tileWidth / tileHeight;
    if (rows >= rowsOfSquare && row + rows < down.count)
        rows -= (down.first + row + rows) % rowsOfSquare; // ends at an edge of squares
    count = std::uint64_t{rows} * columns;
    const std::uint32_t left = (across.first + column) * tileWidth;
    const std::uint32_t top = (down.first + row) * tileHeight;
    const VkRect2D tiles{{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top)},
                         {columns * tileWidth, rows * tileHeight}};
    const std::uint32_t endX = narrow(area.offset.x) + area.extent.width;
    const std::uint32_t endY = narrow(area.offset.y) + area.extent.height;
    const std::int32_t x = std::max(tiles.offset.x, area.offset.x);
    const std::int32_t y = std::max(tiles.offset.y, area.offset.y);
    return {{x, y},
            {std::min(left + tiles.extent.width, endX) - narrow(x),
             std::min(top + tiles.extent.height, endY) - narrow(y)}};
}

// The command of `count` elements from the first that is left. Not of pixels.
Command Division::part(std::uint64_t count) const {
    if (way_ == Way::whole)
        return command_;
    Command made = command_;
    const std::uint32_t first = narrow(done_);
    const std::uint32_t primitive = verticesOf(state_.topology);
    const std::uint32_t firstVertex = first * primitive, vertices = narrow(count) * primitive;
    if (auto* draw = std::get_if<command::Draw>(&made)) {
        if (way_ == Way::instances) {
            draw->firstInstance += first;
            draw->instances = narrow(count);
        } else {
            draw->firstVertex += firstVertex;
            draw->vertices = vertices;
        }
    } else if (auto* indexed = std::get_if<command::DrawIndexed>(&made)) {
        if (way_ == Way::instances) {
            indexed->firstInstance += first;
            indexed->instances = narrow(count);
        } else {
            indexed->firstIndex += firstVertex;
            indexed->indices = vertices;
        }
    } else if (auto* indirect = std::get_if<command::DrawIndirect>(&made)) {
        indirect->offset += done_ * indirect->stride;
        indirect->draws = narrow(count);
    } else if (auto* dispatch = std::get_if<command::Dispatch>(&made)) {
        dispatch->first[axis_] += first;
        dispatch->groups[axis_] = narrow(count);
    }
    return made;
}

std::uint64_t Division::recordNext(const CommandTarget& target, std::uint64_t units) {
    const std::uint64_t left = elements_ - done_;
    std::uint64_t count = std::min(std::max<std::uint64_t>(units / unitsOfElement_, 1), left);
    if (way_ == Way::pixels && count < elements_) {
        record(target, command::SetScissor{rectangle(count)});
        record(target, command_);
        record(target, command::SetScissor{state_.scissor});
    } else {
        record(target, way_ == Way::pixels ? command_ : part(count));
    }
    done_ += count;
    return count * unitsOfElement_;
}

} // namespace tarnwick::gpu
