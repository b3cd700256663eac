#include "benchmarks/FirstPicture.h"

#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/Program/CompiledEpisode.h"
#include "TarnwickRender/ProgramFrames.h"
#include "benchmarks/Case.h"
#include "benchmarks/Statistics.h"

#include <algorithm>
#include <array>

namespace tarnwick::bench {

namespace {

constexpr std::uint32_t width = 1280, height = 720;

// The kinds: a picture, points, a grid with a background, a picture that hears, one with sound.
constexpr std::array names{"ember-silk", "firefly-meadow", "moon-lotus", "listening-lake",
                           "long-play"};

void drawFirst(gpu::Device& device, gpu::CommandQueue& queue, const gpu::Texture& target,
               const std::shared_ptr<const ShaderProgram>& program) {
    const auto frames = ProgramFrames::make(program, device, width, height);
    auto commands = queue.commandBuffer();
    gpu::RenderPassDescriptor pass;
    pass.color.texture = &target;
    pass.color.load = gpu::LoadAction::clear;
    const FrameMoment moment{.time = 1.0f / 60, .timeDelta = 1.0f / 60, .frame = 1};
    if (!frames || !commands ||
        !frames->encode(*commands, {.moment = moment, .values = {}}, {.descriptor = pass}))
        throw gpu::DeviceError("The device cannot make the objects that the episode requires.");
    commands->commit();
    commands->waitUntilCompleted();
}

} // namespace

std::vector<FirstPictureCase> firstPictureCases(const std::filesystem::path& episodes) {
    std::vector<FirstPictureCase> found;
    for (const char* name : names)
        found.push_back({std::string("first picture ") + name,
                         fileText(episodes / (std::string(name) + ".metal"))});
    return found;
}

FirstPictureTime firstPictureTime(gpu::Device& device, const FirstPictureCase& one, int rounds) {
    gpu::TextureDescriptor descriptor;
    descriptor.width = width;
    descriptor.height = height;
    descriptor.usage.renderTarget = true;
    const auto target = device.newTexture(descriptor);
    const auto queue = device.newCommandQueue();
    if (!target || !queue)
        throw gpu::DeviceError("The device cannot make a picture.");
    std::vector<double> compiling, making, drawing;
    for (int round = 0; round < rounds; round++) {
        std::unique_ptr<CompiledEpisode> compiled;
        std::shared_ptr<const ShaderProgram> program;
        compiling.push_back(milliseconds([&] {
            compiled = std::make_unique<CompiledEpisode>(
                CompiledEpisode::make(Episode::of(one.text), &device));
        }));
        making.push_back(milliseconds(
            [&] { program = ShaderProgram::make(*compiled, device, descriptor.format); }));
        drawing.push_back(milliseconds([&] { drawFirst(device, *queue, *target, program); }));
    }
    return {smallest(compiling), smallest(making), smallest(drawing)};
}

} // namespace tarnwick::bench
