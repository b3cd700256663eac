#include "tests/TarnwickGPU/Gpu.h"

#include "tests/Validation.h"

#include <gtest/gtest.h>
#include <shaderc/shaderc.hpp>

namespace tarnwick::tests {

namespace {

shaderc_shader_kind shaderKind(msl::Stage stage) {
    switch (stage) {
    case msl::Stage::vertex:
        return shaderc_vertex_shader;
    case msl::Stage::fragment:
        return shaderc_fragment_shader;
    case msl::Stage::object:
        return shaderc_task_shader;
    case msl::Stage::mesh:
        return shaderc_mesh_shader;
    case msl::Stage::kernel:
        break;
    }
    return shaderc_compute_shader;
}

std::string preamble(msl::Stage stage) {
    std::string text = "#version 460\n"
                       "#extension GL_EXT_scalar_block_layout : require\n"
                       "#extension GL_EXT_samplerless_texture_functions : require\n"
                       "layout(constant_id = 0) const uint loopBudget = 1;\n";
    if (stage == msl::Stage::kernel)
        text += "layout(local_size_x_id = 1, local_size_y_id = 2, local_size_z_id = 3) in;\n"
                "layout(push_constant) uniform Grid { uvec3 grid; };\n";
    return text;
}

} // namespace

msl::EntryPoint glsl(msl::Stage stage, const std::string& name, const std::string& body,
                     std::vector<msl::Resource> resources) {
    shaderc::CompileOptions options;
    options.SetTargetEnvironment(shaderc_target_env_vulkan, shaderc_env_version_vulkan_1_3);
    const auto result = shaderc::Compiler().CompileGlslToSpv(
        preamble(stage) + body, shaderKind(stage), name.c_str(), options);
    EXPECT_EQ(result.GetErrorMessage(), "");
    return {.name = name,
            .stage = stage,
            .words = {result.begin(), result.end()},
            .resources = std::move(resources),
            .colorAttachments = stage == msl::Stage::fragment ? 1u : 0u};
}

msl::EntryPoint wholeTarget() {
    return glsl(msl::Stage::vertex, "wholeTarget",
                "layout(location = 0) out vec2 at;\n"
                "void main() {\n"
                "    vec2 corner = vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1);\n"
                "    gl_Position = vec4(corner * 4 - 1, 0, 1);\n"
                "    at = vec2(corner.x * 2, 1 - corner.y * 2);\n"
                "}\n");
}

void Gpu::SetUp() {
    device = gpu::Device::systemDefault();
    if (!device)
        GTEST_SKIP() << "There is no Vulkan 1.3 device.";
    queue = device->newCommandQueue();
    ASSERT_TRUE(queue);
}

void Gpu::withoutValidation() {
    setenv("TARNWICK_VALIDATION", "0", 1);
    device = gpu::Device::systemDefault();
    setenv("TARNWICK_VALIDATION", "1", 1);
    queue = device->newCommandQueue();
}

std::unique_ptr<gpu::RenderPipelineState> Gpu::pipeline(const msl::EntryPoint& vertex,
                                                        const msl::EntryPoint& fragment,
                                                        gpu::RenderPipelineDescriptor descriptor) {
    const auto library = device->newLibrary(std::vector{vertex, fragment});
    const auto vertexFunction = library->newFunction(vertex.name);
    const auto fragmentFunction = library->newFunction(fragment.name);
    descriptor.vertex = vertexFunction.get();
    descriptor.fragment = fragmentFunction.get();
    return device->newRenderPipelineState(descriptor);
}

std::unique_ptr<gpu::ComputePipelineState> Gpu::pipeline(const msl::EntryPoint& kernel) {
    const auto function = device->newLibrary(std::vector{kernel})->newFunction(kernel.name);
    return device->newComputePipelineState(*function);
}

std::unique_ptr<gpu::Texture> Gpu::target(std::uint32_t width, std::uint32_t height,
                                          gpu::PixelFormat format) {
    return device->newTexture({.format = format,
                               .width = width,
                               .height = height,
                               .usage = {.shaderRead = true, .renderTarget = true}});
}

void Gpu::draw(const gpu::RenderPipelineState& state, const gpu::Texture& texture,
               const gpu::Texture* fragmentTexture) {
    render({.color = {.texture = &texture, .load = gpu::LoadAction::clear}}, [&](auto& encoder) {
        encoder.setRenderPipelineState(state);
        encoder.setFragmentTexture(fragmentTexture, 0);
        encoder.drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    });
}

void Gpu::finish(gpu::CommandBuffer& commands) {
    commands.commit();
    commands.waitUntilCompleted();
    EXPECT_EQ(commands.status(), gpu::CommandBufferStatus::completed);
}

Pixel pixelAt(const gpu::Texture& texture, std::uint32_t x, std::uint32_t y) {
    Pixel pixel{};
    texture.getBytes(pixel.data(), pixel.size(), {x, y, 1, 1}, 0);
    return pixel;
}

} // namespace tarnwick::tests
