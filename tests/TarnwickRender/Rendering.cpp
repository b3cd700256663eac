#include "tests/TarnwickRender/Rendering.h"

#include <cstdlib>

namespace tarnwick::tests {

std::string ParticleEpisode::text() const {
    const std::string others(arguments);
    return "// @particles " + std::to_string(count) + "\nstruct Particle { " + fields + " };\n" +
           "Particle spawn(uint id, constant Params& p) {\n    Particle q;\n    " + spawn +
           "\n    return q;\n}\nvoid update(thread Particle& q, uint id, " + others + ") {\n    " +
           update + "\n}\nfloat3 place(Particle q, " + others + ") {\n    " + place +
           "\n}\nfloat4 ink(Particle q, float2 at, " + others + ") {\n    " + ink + "\n}\n" +
           (fade.empty() ? ""
                         : "float4 fade(float2 uv, Trails previous, " + others + ") {\n    " +
                               fade + "\n}\n") +
           "float4 shade(float2 uv, " + others + ", Trails trails) { return trails.at(uv); }\n";
}

Color colorAt(const Picture& picture, std::size_t x, std::size_t y) {
    const std::uint8_t* pixel = &picture.bytes.at(y * picture.bytesPerRow + x * 4);
    return {pixel[2], pixel[1], pixel[0]};
}

void Rendering::SetUp() {
    device = gpu::Device::systemDefault();
    if (!device)
        GTEST_SKIP() << "No device to draw with.";
    queue = device->newCommandQueue();
}

void Rendering::withoutValidation() {
    setenv("TARNWICK_VALIDATION", "0", 1);
    device = gpu::Device::systemDefault();
    setenv("TARNWICK_VALIDATION", "1", 1);
    queue = device->newCommandQueue();
}

std::shared_ptr<const ShaderProgram> Rendering::program(const std::string& episode) {
    return ShaderProgram::compile(Episode::of(episode), *device, ShaderProgram::pixelFormat);
}

Picture Rendering::still(const std::string& episode, std::int64_t width, std::int64_t height,
                         float time, StillNews* news) {
    const auto made = program(episode);
    auto picture = StillRenderer::render(made, *device, width, height, time, 0, {}, news);
    EXPECT_TRUE(picture) << ProgramFrames::absence(*made, *device, width, height);
    return picture.value_or(Picture());
}

std::unique_ptr<gpu::Texture> Rendering::target(std::uint32_t width, std::uint32_t height) {
    return device->newTexture({.width = width, .height = height, .usage = {.renderTarget = true}});
}

Picture Rendering::frame(ProgramFrames& frames, float time, std::int64_t limit,
                         const ShaderInputs& inputs) {
    const auto texture = target(static_cast<std::uint32_t>(frames.width()),
                                static_cast<std::uint32_t>(frames.height()));
    perform([&](gpu::CommandBuffer& commands) {
        frames.encode(
            commands,
            {.moment = {.time = time}, .values = {}, .inputs = inputs, .stepLimit = limit},
            {.descriptor = {.color = {.texture = texture.get(), .load = gpu::LoadAction::clear}}});
    });
    return pictureOf(*texture);
}

} // namespace tarnwick::tests
