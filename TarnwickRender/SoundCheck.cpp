#include "TarnwickRender/SoundCheck.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickRender/Program/HostFunctions.h"
#include "TarnwickRender/Program/ParamBuffer.h"
#include "TarnwickRender/ShaderError.h"
#include "TarnwickRender/Sound/SoundSamples.h"

#include <algorithm>
#include <span>
#include <string>

namespace tarnwick {
namespace {

// Appended to the program, whose lines keep their numbers. Its identifiers are those of the sound
// kernel or begin with the host's prefix, so that no macro of the episode changes it. It tests the
// bits, because a device may not support comparisons with NaN (Vulkan 1.3, "Precision and Operation
// of SPIR-V Instructions").
constexpr std::string_view kernelText = R"(
kernel void tw_sound_check(device uint* out [[buffer(0)]],
                           constant SoundUniforms& su [[buffer(1)]],
                           constant Params& p [[buffer(2)]],
                           uint i [[thread_position_in_grid]]) {
    if (i >= su.count) return;
    float tw_time = su.start + float(i) / su.rate;
    uint2 tw_exponents = as_type<uint2>(sound(tw_time, p)) & 0x7f800000u;
    out[i] = tw_time >= 0.0 && any(tw_exponents == 0x7f800000u);
}
)";

std::unique_ptr<gpu::ComputePipelineState> checkingKernel(const std::string& program,
                                                          gpu::Device& device) {
    try {
        const auto library = device.newLibrary(program + std::string(kernelText));
        if (const auto function = findHostFunction(*library, soundCheckName, msl::Stage::kernel))
            return device.newComputePipelineState(*function);
    } catch (const gpu::LibraryError& error) {
        throw ShaderError(error.what());
    } catch (const gpu::DeviceError& error) {
        throw ShaderError(error.what());
    }
    throw ShaderError("The sound's check is missing from the compiled library.");
}

} // namespace

std::unique_ptr<SoundCheck> SoundCheck::make(const AssembledShader& episode, gpu::Device& device) {
    std::unique_ptr<SoundCheck> made(new SoundCheck);
    made->kernel_ = checkingKernel(episode.source, device);
    made->params_ = episode.params;
    made->queue_ = device.newCommandQueue();
    made->marks_ = device.newBuffer(mostSamples * sizeof(std::uint32_t));
    return made->queue_ && made->marks_ ? std::move(made) : nullptr;
}

std::optional<double> SoundCheck::firstNotFinite(double start, std::uint32_t count,
                                                 const ParamValues& values) {
    precondition(count <= mostSamples, "the samples of a check fit into its buffer", "samples",
                 count, "room", mostSamples);
    const std::span marks(static_cast<std::uint32_t*>(marks_->contents()), count);
    std::fill(marks.begin(), marks.end(), 0u); // a thread that the loop budget ends writes none
    if (runSoundKernel(*kernel_, *queue_, *marks_, start, count, ParamBuffer(params_, values)) ==
        SoundResult::failed)
        return std::nullopt;
    const auto first =
        std::find_if(marks.begin(), marks.end(), [](auto mark) { return mark != 0; });
    if (first == marks.end())
        return std::nullopt;
    const auto index = static_cast<double>(first - marks.begin());
    return std::max(start + index / ShaderAssembler::sampleRate,
                    0.0); // rounding can give -0 or less
}

} // namespace tarnwick
