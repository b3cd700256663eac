#include "tests/TarnwickRender/Rendering.h"

#include <functional>

using namespace tarnwick;
using namespace tarnwick::tests;

namespace {

const std::string plain = "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                          "    return float4(uv, 0.0, 1.0);\n}\n";
const std::string particles =
    "// @particles 1000\n"
    "struct Particle { float2 at; float2 speed; float age; };\n"
    "Particle spawn(uint id, constant Params& p) { return Particle{float2(id), float2(0), 0}; }\n"
    "void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {\n"
    "    q.at += q.speed * u.timeDelta;\n}\n"
    "float3 place(Particle q, constant Uniforms& u, constant Params& p) {\n"
    "    return float3(q.at, 0.01);\n}\n"
    "float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(1.0 - length(at));\n}\n"
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {\n"
    "    return trails.at(uv);\n}\n";
const std::string grid =
    "// @grid 8\n"
    "struct Vertex { float4 position [[position]]; float height; };\n"
    "Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {\n"
    "    return Vertex{float4(grid * 2.0 - 1.0, 0.5, 1.0), grid.x};\n}\n"
    "float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(v.height);\n}\n"
    "float4 background(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(0.1);\n}\n";

struct Programs : Rendering {
    // What a pass that `encode` fills leaves in one pixel cleared to blue: blue, green, red, alpha.
    std::array<int, 4> drawn(const std::function<void(gpu::RenderCommandEncoder&)>& encode) {
        const auto shown = target(1, 1);
        perform([&](gpu::CommandBuffer& commands) {
            auto encoder = commands.renderCommandEncoder({.color = {.texture = shown.get(),
                                                                    .load = gpu::LoadAction::clear,
                                                                    .clear = {.blue = 1}}});
            encode(*encoder);
            encoder->endEncoding();
        });
        const Picture picture = pictureOf(*shown);
        return {picture.bytes[0], picture.bytes[1], picture.bytes[2], picture.bytes[3]};
    }
};

} // namespace

TEST_F(Programs, ofAPlainEpisodeNeedNothingBesideTheirPipeline) {
    const auto made = program("// @param x 1 0 2\n" + plain);
    EXPECT_EQ(made->params(), (std::vector<ParamDecl>{{"x", 1, 0, 2, ""}}));
    EXPECT_FALSE(made->needsRun() || made->usesInputs() || made->hasSound());
    EXPECT_EQ(made->particleCount() + made->particleStride() + made->gridSize(), 0);
}

TEST_F(Programs, measureTheParticleAsTheGPULaysItOut) {
    const auto made = program(particles);
    EXPECT_EQ(made->particleCount(), 1000);
    EXPECT_EQ(made->particleStride(), 24); // two float2 and a float, aligned to 8
    EXPECT_TRUE(made->needsRun() && !made->isMesh());
}

TEST_F(Programs, ofAGridEpisodeHaveTheirMesh) {
    const auto made = program(grid);
    EXPECT_EQ(made->gridSize(), 8);
    ASSERT_NE(made->mesh(), nullptr);
    EXPECT_NE(made->mesh()->background, nullptr);
    EXPECT_EQ(program(grid.substr(0, grid.find("float4 background")))->mesh()->background, nullptr);
}

TEST_F(Programs, drawNothingWithoutTheRunThatTheyNeed) {
    const TWUniforms uniforms{.resolution = {1, 1}};
    for (const std::string& episode : {particles, grid}) {
        const auto made = program(episode);
        const auto pixel = drawn([&](auto& encoder) { made->draw(encoder, uniforms, {}); });
        EXPECT_EQ(pixel, (std::array{255, 0, 0, 255}));
    }
}

TEST_F(Programs, giveInputsOrSilenceAndBlack) {
    const auto made =
        program("float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
                "    return float4(in.audio.x, in.channel(1, uv).x, in.channel(2, uv).x\n"
                "                  + in.previous(uv).x + in.band(0.5), in.channel(0, uv).w);\n}\n");
    EXPECT_TRUE(made->usesInputs());
    const TWUniforms uniforms{.resolution = {1, 1}};
    EXPECT_EQ(drawn([&](auto& encoder) { made->draw(encoder, uniforms, {}); }),
              (std::array{0, 0, 0, 0}));
    const auto white = device->newTexture({.format = gpu::PixelFormat::rgba8Unorm});
    const std::array<std::uint8_t, 4> bytes{255, 255, 255, 255};
    white->replace({.width = 1, .height = 1}, 0, bytes.data(), 4);
    const ShaderInputs inputs{.audio = {1, 0, 0, 0}, .channels = {white.get(), nullptr, nullptr}};
    EXPECT_EQ(drawn([&](auto& encoder) { made->draw(encoder, uniforms, {}, nullptr, &inputs); }),
              (std::array{0, 0, 255, 255}));
}

TEST_F(Programs, throwTheCompilersFindings) {
    try {
        program(plain + "float x = ;\n");
        FAIL() << "The episode compiles.";
    } catch (const ShaderError& error) {
        ASSERT_FALSE(error.diagnostics.empty());
        EXPECT_EQ(error.diagnostics[0].line, 4);
        EXPECT_EQ(error.diagnostics[0].severity, Severity::error);
        EXPECT_NE(error.raw.find("shader.metal:4:"), std::string::npos);
    }
}

TEST_F(Programs, thatLackAFunctionSayWhichTheirKindDefines) {
    for (const auto& [episode, header] :
         {std::pair{"// @particles 5\n" + plain, "a particle episode defines:\n"},
          std::pair{"// @grid 5\n" + plain, "a vertex episode defines:\n"}}) {
        try {
            program(episode);
            FAIL() << "The episode compiles.";
        } catch (const ShaderError& error) {
            ASSERT_FALSE(error.diagnostics.empty());
            EXPECT_TRUE(error.diagnostics.back().message.starts_with(header));
        }
    }
}

// An episode hides a host's name by a macro and defines a function of that name itself.
TEST_F(Programs, takeNoFunctionOfTheEpisodesForTheHosts) {
    struct Row {
        std::string episode, name, function, error;
    };
    const std::string kernel = "kernel void NAME(device uint* o [[buffer(0)]]) { o[0] = 1; }";
    const std::string fragment = "fragment float4 NAME() { return 1; }";
    const std::string sound = plain + "float2 sound(float t, constant Params& p) { return 0; }\n";
    const auto missing = [](const std::string& name) {
        return "The host's " + name + " entry point is missing from the compiled library.";
    };
    const std::string refused = "The device could not make the render pipeline of tw_vertex and "
                                "tw_fragment: tw_fragment ";
    const std::string main = "The host entry points are missing from the compiled library.";
    const Row rows[] = {
        {plain, "tw_fragment", kernel, main},
        {plain, "tw_fragment",
         "fragment float4 NAME(device float4* a [[buffer(0)]]) { return *a; }", main},
        {plain, "tw_fragment",
         "fragment float4 NAME(sampler s, texture2d<float> t [[texture(0)]])"
         " { return t.sample(s, float2(0)); }",
         main},
        {plain, "tw_fragment",
         "fragment float4 NAME(texture3d<float> t [[texture(0)]])"
         " { return t.read(uint3(0)); }",
         main},
        {plain, "tw_fragment",
         "struct Big { float4 v[70000000]; };"
         "fragment float4 NAME(constant Big& b [[buffer(0)]]) { return b.v[69999999]; }",
         main},
        {plain, "tw_fragment",
         "struct I { float4 p [[position]]; int uv; };"
         "fragment float4 NAME(I i [[stage_in]]) { return i.uv; }",
         refused + "takes a value that tw_vertex does not give, or gives as another type."},
        {plain, "tw_fragment",
         "struct R { int4 c [[color(0)]]; }; fragment R NAME() { return {1}; }",
         refused + "gives integers, and the target holds fractions."},
        {sound, "tw_sound", fragment, missing("sound")},
        {sound, "tw_sound", "[[max_total_threads_per_threadgroup(1)]] " + kernel, missing("sound")},
        {sound, "tw_sound",
         "kernel void NAME(threadgroup float* a [[threadgroup(0)]],"
         " device float* o [[buffer(0)]]) { o[0] = a[1]; }",
         missing("sound")},
        {particles, "tw_particle_size", fragment, missing("tw_particle_size")},
        {particles, "tw_update", fragment, missing("tw_update")},
        {particles, "tw_fade", kernel, missing("tw_fade")},
        {particles, "tw_dot_vertex",
         "vertex float4 NAME(device float* a [[buffer(0)]])"
         " { a[0] = 1; return 0; }",
         missing("tw_dot_vertex")},
        {particles, "tw_dot_vertex", "[[patch(quad)]] vertex float4 NAME() { return 0; }",
         missing("tw_dot_vertex")},
        {particles, "tw_dot_vertex",
         "struct I { float4 p [[attribute(0)]]; };"
         "vertex float4 NAME(I i [[stage_in]]) { return i.p; }",
         missing("tw_dot_vertex")},
        {grid, "tw_grid_vertex", fragment, missing("tw_grid_vertex")},
        {grid, "tw_background", kernel, missing("tw_background")},
    };
    for (const Row& row : rows) {
        std::string text = row.function;
        text.replace(text.find("NAME"), 4, row.name);
        const std::string episode = row.episode + text + "\n#define " + row.name + " hidden\n";
        try {
            program(episode);
            ADD_FAILURE() << episode;
        } catch (const ShaderError& error) {
            EXPECT_EQ(error.raw, row.error) << episode;
        }
    }
}

TEST_F(Programs, passMembersOfAVertexThatWereNeverSet) {
    std::string unset = grid;
    unset.replace(unset.find("return Vertex{"),
                  unset.find("grid.x};") + 8 - unset.find("return Vertex{"),
                  "Vertex v; v.position = 0; return v;");
    EXPECT_TRUE(program(unset));
}
