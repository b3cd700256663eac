// How one draw or dispatch is divided into parts that give the same result one after the other:
//
// - A dispatch by ranges of its threadgroups.
// - A draw of many vertices by ranges of its triangles or points, or of its instances. The parts
//   keep the order of the whole, so blending and depth give the same picture. Triangles of a strip
//   share vertices and stay together.
// - Any other draw by rectangles of the picture (scissors). Their edges are even, so that each
//   square of four pixels, from which derivatives are computed, is in one part. The vertex function
//   runs again for each part. The packaged CPU driver loses samples at the edges of a scissor in
//   targets of several samples: there, triangles are divided whatever their number.
//
// Work that sees how it is divided (WorkTraits) stays whole.
#pragma once

#include "TarnwickGPU/Commands/CommandRecording.h"

#include <cstdint>
#include <optional>

namespace tarnwick::gpu {

// The state of a stream that divisions depend on.
struct DrawState {
    VkRect2D scissor{};
    VkExtent2D target{};
    VkPrimitiveTopology topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    bool scissorsExactly = true; // RenderingRecord::scissorsExactly
};

// Pixels: the edges of rectangles are multiples of both, but those of the scissor. The packaged CPU
// driver draws squares of 64 pixels, each on one thread.
inline constexpr std::uint32_t tileWidth = 64, tileHeight = 16;

class Division {
  public:
    // Nothing for a command that is no work.
    static std::optional<Division> make(const Command& command, const CommandStream& stream,
                                        const DrawState& state);

    WorkUnit unit() const { return unit_; }
    std::uint64_t units() const { return elements_ * unitsOfElement_; }
    std::uint64_t unitsLeft() const { return (elements_ - done_) * unitsOfElement_; }
    bool isDone() const { return done_ == elements_; }
    // Records the next part, of about `units` units, at least one element. Returns its units.
    std::uint64_t recordNext(const CommandTarget& target, std::uint64_t units);

  private:
    enum class Way : std::uint8_t { whole, pixels, primitives, instances, draws, threadgroups };

    Division(const Command& command, const DrawState& state) : command_(command), state_(state) {}
    void divideDraw(const WorkTraits& traits, std::uint64_t vertices, std::uint64_t instances);
    void divideByPixels(const WorkTraits& traits, std::uint64_t vertices);
    void divideDispatch(const WorkTraits& traits, const command::Dispatch& dispatch);
    VkRect2D rectangle(std::uint64_t& count) const;
    Command part(std::uint64_t count) const;

    Command command_;
    DrawState state_;
    Way way_ = Way::whole;
    WorkUnit unit_ = WorkUnit::vertex;
    std::uint64_t elements_ = 1, done_ = 0, unitsOfElement_ = 1;
    std::uint32_t columns_ = 1; // of tiles
    std::size_t axis_ = 0;      // of threadgroups
};

} // namespace tarnwick::gpu
