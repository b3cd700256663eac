// The commands of a command buffer in pieces that take about 50 ms each, so that no submission
// keeps the GPU from other programs for long and the work can be abandoned between two.
//
// The first piece of work whose cost is not known is small. After each piece its measured time
// decides the size of the next one (PieceSize). The costs are kept with the pipelines (WorkTraits),
// so that the next command buffer starts with them; work that is known to be quick is not divided
// at all.
//
// A piece ends in the middle of a render pass if it must. The next one sets the state again and
// goes on with the contents of the targets.
#pragma once

#include "TarnwickGPU/Commands/Division.h"
#include "TarnwickGPU/Commands/PieceSize.h"
#include "TarnwickGPU/Vulkan/PiecewiseWork.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::gpu {

// The seconds that the work of the stream took before; nothing if that is not known for all that is
// worth dividing, or if `device` divides all work.
std::optional<double> knownSeconds(const DeviceRecord& device, const CommandStream& stream);
// The stream took much longer than knownSeconds().
void forgetSeconds(const CommandStream& stream);

class Pieces final : public PiecewiseWork {
  public:
    // Records into the only command buffer of `pool`, which nothing else uses until the last piece
    // is done.
    Pieces(const DeviceRecord& device, VkCommandPool pool, VkCommandBuffer handle,
           std::shared_ptr<const CommandStream> stream)
        : device_(device), pool_(pool), handle_(handle), stream_(std::move(stream)) {}

    std::optional<Piece> next(WorkLeft left) override;
    void took(double seconds) override;

  private:
    // What one piece has of a draw or dispatch.
    struct Share {
        PieceSize size;
        std::uint64_t units = 0;
        double expected = 0; // seconds; 0: not known
        bool isLast = false; // of the draw or dispatch
    };

    void start();
    bool fill(WorkLeft left); // whether all commands are recorded
    bool addWork(WorkLeft left);
    void heed(const Command& command);

    CommandTarget target() const { return {device_, handle_, *stream_}; }

    const DeviceRecord& device_;
    VkCommandPool pool_;
    VkCommandBuffer handle_;
    std::shared_ptr<const CommandStream> stream_;
    std::size_t at_ = 0;               // the next command
    std::optional<Division> division_; // of that command, if it has begun
    std::optional<PieceSize> size_;    // of the draw or dispatch that was begun last
    // The state that a piece sets again: the last command of each kind.
    static constexpr std::size_t kinds = 16;
    std::array<std::optional<std::size_t>, kinds> state_;
    DrawState drawState_;
    const RenderingRecord* rendering_ = nullptr; // the open one
    bool isRenderingCut_ = false;
    bool isFirst_ = true;
    std::vector<Share> shares_; // of the piece
    double expected_ = 0;       // seconds of the piece
};

} // namespace tarnwick::gpu
