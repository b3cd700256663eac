#include "TarnwickGPU/Commands/Pieces.h"

#include "TarnwickGPU/Vulkan/MemoryBarrier.h"

#include <algorithm>
#include <utility>

namespace tarnwick::gpu {

namespace {

// Fewer units do not occupy the device, so that dividing them would not make a piece shorter.
std::uint64_t fewestUnits(const DeviceRecord& device, WorkUnit unit) {
    if (device.unitsOfPieces > 0)
        return device.unitsOfPieces;
    switch (unit) {
    case WorkUnit::pixel:
    case WorkUnit::thread:
        return device.info.isCPU ? 1024 * device.processors : 16384;
    case WorkUnit::vertex:
        return device.info.isCPU ? 1536 : 16384; // one thread of the CPU driver sets vertices up
    }
    return 1;
}

// The index in Pieces::state_; nothing for commands that set no state.
struct StateKind {
    using Result = std::optional<std::size_t>;

    static std::size_t of(VkPipelineBindPoint point) {
        return point == VK_PIPELINE_BIND_POINT_COMPUTE ? 1 : 0;
    }
    Result operator()(const command::BindPipeline& one) const { return 0 + of(one.point); }
    Result operator()(const command::PushDescriptors& one) const { return 2 + of(one.point); }
    Result operator()(const command::BindDescriptors& one) const { return 2 + of(one.point); }
    Result operator()(const command::PushConstants& one) const {
        switch (one.stages) {
        case VK_SHADER_STAGE_COMPUTE_BIT:
            return 4;
        case VK_SHADER_STAGE_VERTEX_BIT:
            return 5;
        case VK_SHADER_STAGE_FRAGMENT_BIT:
            return 6;
        default:
            return 7;
        }
    }
    Result operator()(const command::SetViewport&) const { return 8; }
    Result operator()(const command::SetScissor&) const { return 9; }
    Result operator()(const command::SetBlendColor&) const { return 10; }
    Result operator()(const command::SetDepth&) const { return 11; }
    Result operator()(const command::SetTopology&) const { return 12; }
    Result operator()(const command::BindVertexBuffers&) const { return 13; }
    Result operator()(const command::BindIndices&) const { return 14; }
    template <typename Other> Result operator()(const Other&) const { return std::nullopt; }
};

void heedDrawState(DrawState& state, const Command& command, const CommandStream& stream) {
    if (const auto* scissor = std::get_if<command::SetScissor>(&command))
        state.scissor = scissor->rectangle;
    else if (const auto* topology = std::get_if<command::SetTopology>(&command))
        state.topology = topology->topology;
    else if (const auto* begin = std::get_if<command::BeginRendering>(&command)) {
        const RenderingRecord& rendering = stream.renderings[begin->index];
        state.target = rendering.extent;
        state.scissorsExactly = rendering.scissorsExactly;
    }
}

struct TraitsIndex {
    template <typename One> std::optional<std::uint32_t> operator()(const One& one) const {
        if constexpr (requires { one.traits; })
            return one.traits;
        else
            return std::nullopt;
    }
};

// Of work; nothing for other commands.
std::optional<std::uint32_t> traitsIndexOf(const Command& command) {
    return std::visit(TraitsIndex{}, command);
}

} // namespace

std::optional<double> knownSeconds(const DeviceRecord& device, const CommandStream& stream) {
    double seconds = 0;
    DrawState state;
    for (const Command& command : stream.commands) {
        heedDrawState(state, command, stream);
        const auto traits = traitsIndexOf(command);
        if (!traits)
            continue;
        const auto division = Division::make(command, stream, state);
        const WorkCost& cost = stream.traits[*traits]->cost(division->unit());
        const bool isWorthDividing =
            division->units() > fewestUnits(device, division->unit()) || device.unitsOfPieces > 0;
        if (isWorthDividing && (!cost.isKnown() || device.unitsOfPieces > 0))
            return std::nullopt;
        const WorkCost::Seconds known = cost.seconds();
        seconds += known.fixed + known.mean * static_cast<double>(division->units());
    }
    return seconds;
}

void forgetSeconds(const CommandStream& stream) {
    for (const std::shared_ptr<WorkTraits>& traits : stream.traits)
        for (WorkCost& cost : traits->costs)
            cost.forget();
}

std::optional<PiecewiseWork::Piece> Pieces::next(WorkLeft left) {
    const VkCommandBufferBeginInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                        .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    if (vkResetCommandPool(device_.handle, pool_, 0) != VK_SUCCESS ||
        vkBeginCommandBuffer(handle_, &info) != VK_SUCCESS)
        return std::nullopt;
    shares_.clear();
    expected_ = 0;
    start();
    const bool isLast = fill(left);
    if (rendering_) {
        vkCmdEndRendering(handle_);
        isRenderingCut_ = true;
    }
    if (vkEndCommandBuffer(handle_) != VK_SUCCESS)
        return std::nullopt;
    return Piece{.commands = handle_, .isLast = isLast};
}

// Goes on where the piece before ended: a command buffer begins without any state (Vulkan 1.3, 6).
void Pieces::start() {
    if (std::exchange(isFirst_, false))
        return;
    recordMemoryBarrier(handle_);
    std::array<std::size_t, kinds> indices;
    std::size_t count = 0;
    for (const auto& index : state_)
        if (index)
            indices[count++] = *index;
    std::sort(indices.begin(), indices.begin() + static_cast<std::ptrdiff_t>(count));
    for (std::size_t n = 0; n < count; ++n)
        record(target(), stream_->commands[indices[n]]);
    if (rendering_)
        beginRendering(target(), *rendering_, RenderingStart::goesOn);
}

bool Pieces::fill(WorkLeft left) {
    for (; at_ < stream_->commands.size(); ++at_) {
        const Command& command = stream_->commands[at_];
        if (traitsIndexOf(command)) {
            if (!addWork(left))
                return false;
            continue;
        }
        record(target(), command);
        heed(command);
    }
    return true;
}

// Notes what a later piece must know of a command that was recorded.
void Pieces::heed(const Command& command) {
    if (const auto kind = std::visit(StateKind{}, command))
        state_[*kind] = at_;
    heedDrawState(drawState_, command, *stream_);
    if (const auto* begin = std::get_if<command::BeginRendering>(&command)) {
        rendering_ = &stream_->renderings[begin->index];
        isRenderingCut_ = false;
    } else if (std::holds_alternative<command::EndRendering>(command)) {
        if (isRenderingCut_ && resolves(*rendering_))
            resolve(target(), *rendering_);
        rendering_ = nullptr;
    }
}

// Adds what fits of the draw or dispatch at at_. False if the piece ends here.
bool Pieces::addWork(WorkLeft left) {
    if (left == WorkLeft::omitted) {
        division_.reset();
        return true;
    }
    const Command& command = stream_->commands[at_];
    const std::shared_ptr<WorkTraits>& traits = stream_->traits[*traitsIndexOf(command)];
    if (!division_) {
        division_ = Division::make(command, *stream_, drawState_);
        size_.reset();
    }
    const std::uint64_t fewest = fewestUnits(device_, division_->unit());
    if (!size_ || size_->pieces() == 0) // the piece before may have measured the same work
        size_.emplace(traits->cost(division_->unit()), fewest);
    const bool isSmall = division_->units() <= fewest;
    const double least = size_->expected(std::min(fewest, division_->unitsLeft()));
    const bool isFull = expected_ + least > pieceSeconds || (size_->isUnknown() && !isSmall) ||
                        device_.unitsOfPieces > 0;
    if (!shares_.empty() && isFull)
        return false;
    const std::uint64_t next = size_->next(pieceSeconds - expected_);
    const std::uint64_t units =
        division_->recordNext(target(), device_.unitsOfPieces > 0 ? fewest : next);
    const bool isDone = division_->isDone(), isDivided = !isDone || size_->pieces() > 0;
    const double expected = size_->expected(units);
    expected_ += expected;
    shares_.push_back({.size = *size_, .units = units, .expected = expected, .isLast = isDone});
    if (!division_->isDone())
        return false;
    division_.reset();
    if (!isDivided)
        return true;
    ++at_; // the time of its last part is measured alone
    return at_ == stream_->commands.size();
}

void Pieces::took(double seconds) {
    std::uint64_t units = 0;
    for (const Share& share : shares_)
        units += share.units;
    for (Share& share : shares_)
        share.size.took(share.units,
                        expected_ > 0 ? seconds * share.expected / expected_
                                      : seconds * static_cast<double>(share.units) /
                                            static_cast<double>(units),
                        share.isLast);
    if (!shares_.empty() && !shares_.back().isLast)
        size_ = shares_.back().size;
}

} // namespace tarnwick::gpu
