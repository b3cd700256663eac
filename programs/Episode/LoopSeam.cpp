#include "programs/Episode/LoopSeam.h"

#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickRender/Channels/EpisodeInputs.h"
#include "TarnwickRender/Performing/TimelineStill.h"
#include "TarnwickRender/ProgramFrames.h"
#include "programs/CommandLine/CommandError.h"

#include <algorithm>
#include <cstdlib>

namespace tarnwick {
namespace {

constexpr std::uint32_t width = 480, height = 270; // pixels of each picture
constexpr int amplification = 8;

Picture frameAt(double time, const std::shared_ptr<const ShaderProgram>& program,
                gpu::Device& device, const Timeline& timeline,
                const std::shared_ptr<FrameInputs>& inputs) {
    auto picture =
        timelineStill(program, device, width, height, timeline, time, {.inputs = inputs});
    if (!picture)
        failure(ProgramFrames::absence(*program, device, width, height));
    return *std::move(picture);
}

Picture differenceOf(const Picture& one, const Picture& other) {
    Picture difference = one;
    for (std::size_t at = 0; at < difference.bytes.size(); ++at) {
        const int apart = std::abs(int{one.bytes[at]} - int{other.bytes[at]});
        difference.bytes[at] = static_cast<std::uint8_t>(std::min(255, amplification * apart));
    }
    return difference;
}

} // namespace

Picture seamOf(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
               const Timeline& timeline, double start, double length,
               const ChannelSources& channels) try {
    const auto inputs = EpisodeInputs::make(program, device, width, height, {.channels = channels});
    const Picture first = frameAt(start, program, device, timeline, inputs);
    const Picture next = frameAt(start + length, program, device, timeline, inputs);
    Picture seam = filledPicture(3 * width, height, {});
    paste(seam, first, 0, 0);
    paste(seam, next, width, 0);
    paste(seam, differenceOf(first, next), std::size_t{2} * width, 0);
    return seam;
} catch (const InputError& error) {
    failure(error.what());
}

} // namespace tarnwick
