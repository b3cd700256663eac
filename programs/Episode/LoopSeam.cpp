#include "programs/Episode/LoopSeam.h"

#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickRender/ProgramFrames.h"
#include "TarnwickRender/StillRenderer.h"
#include "programs/CommandLine/CommandError.h"

#include <algorithm>
#include <cstdlib>

namespace tarnwick {
namespace {

constexpr std::uint32_t width = 480, height = 270; // pixels of each picture
constexpr int amplification = 8;

Picture frameAt(double time, const std::shared_ptr<const ShaderProgram>& program,
                gpu::Device& device, const Settings& settings) {
    auto picture = StillRenderer::render(program, device, width, height, static_cast<float>(time),
                                         0, settings.valuesAt(time));
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
               const Settings& settings, double start, double length) {
    const Picture first = frameAt(start, program, device, settings);
    const Picture next = frameAt(start + length, program, device, settings);
    Picture seam = filledPicture(3 * width, height, {});
    paste(seam, first, 0, 0);
    paste(seam, next, width, 0);
    paste(seam, differenceOf(first, next), std::size_t{2} * width, 0);
    return seam;
}

} // namespace tarnwick
