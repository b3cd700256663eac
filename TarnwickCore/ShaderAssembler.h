// Assembles an episode's text and the host code into one whole Metal program.
#pragma once

#include "TarnwickCore/Params.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// The record that host and episode share in each frame. Its name in the program is `Uniforms`.
struct TWUniforms {
    std::array<float, 2> resolution{}; // width and height in pixels
    float time = 0;                    // seconds since the start of the run
    float timeDelta = 0;               // seconds since the previous frame
    std::array<float, 2> mouse{};      // pixels
    std::uint32_t frame = 0;           // from 0
    std::uint32_t pad = 0;             // always 0

    bool operator==(const TWUniforms&) const = default;
};
static_assert(sizeof(TWUniforms) == 32, "The episode's Uniforms has 32 bytes without gaps.");

struct AssembledShader {
    std::string source;            // the whole program
    std::vector<ParamDecl> params; // in the order of the buffer of values
    bool hasSound = false;         // the episode defines `sound`
    std::int64_t particles = 0;    // 0 for an episode without particles
    bool hasFade = false;          // a particle episode defines `fade`
    std::int64_t grid = 0;         // cells per side; 0 for an episode without a grid
    bool hasBackground = false;    // a grid episode defines `background`
    bool usesInputs = false;       // `shade` of a fragment episode has a parameter `Inputs`

    bool operator==(const AssembledShader&) const = default;

    bool isParticles() const { return particles > 0; }
    bool isMesh() const { return grid > 0; }
};

// Pure; accepts any bytes; never fails. May be called from any thread.
struct ShaderAssembler {
    static constexpr std::string_view fileName = "shader.metal"; // of the episode's own lines
    static constexpr std::string_view vertexName = "tw_vertex";
    static constexpr std::string_view fragmentName = "tw_fragment"; // final picture, every kind
    static constexpr std::string_view soundName = "tw_sound";
    static constexpr std::string_view particleSizeName = "tw_particle_size";
    static constexpr std::string_view spawnName = "tw_spawn";
    static constexpr std::string_view updateName = "tw_update";
    static constexpr std::string_view fadeName = "tw_fade";
    static constexpr std::string_view dotVertexName = "tw_dot_vertex";
    static constexpr std::string_view dotFragmentName = "tw_dot_fragment";
    static constexpr std::string_view meshVertexName = "tw_grid_vertex";
    static constexpr std::string_view meshFragmentName = "tw_grid_fragment";
    static constexpr std::string_view backgroundName = "tw_background";

    static constexpr int sampleRate = 48000; // sound samples per second
    static constexpr int stepRate = 60;      // particle steps per second
    static constexpr std::int64_t maxParticles = 4000000;
    static constexpr std::int64_t maxGrid = 1024;       // cells per side
    static constexpr int spectrumBins = 256;            // width of the spectrum texture
    static constexpr std::uint32_t audioBuffer = 2;     // buffer index of Inputs' audio levels
    static constexpr std::uint32_t spectrumTexture = 0; // the four channels' textures follow
    static constexpr std::uint32_t previousTexture = 5;

    // The functions that an episode of each kind must define, for the user to read.
    static constexpr std::string_view fragmentSignatures =
        R"(float4 shade(float2 uv, constant Uniforms& u, constant Params& p)
or, to read Inputs, float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in)
and optionally float2 sound(float t, constant Params& p))";
    static constexpr std::string_view particleSignatures =
        R"(struct Particle { ... };
Particle spawn(uint id, constant Params& p)
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p)
float3 place(Particle q, constant Uniforms& u, constant Params& p)
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p)
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails)
and optionally float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p))";
    static constexpr std::string_view meshSignatures =
        R"(struct Vertex { float4 position [[position]]; ... };
Vertex corner(float2 grid, constant Uniforms& u, constant Params& p)
float4 shade(Vertex v, constant Uniforms& u, constant Params& p)
and optionally float4 background(float2 uv, constant Uniforms& u, constant Params& p))";

    static AssembledShader assemble(std::string_view source); // of the text of an episode

    // The members of `Params`, one line each; no line break after the last.
    static std::string paramsBody(std::span<const ParamDecl> params);
    // The numbers in `// @particles N` and `// @grid N`, limited to the maxima above; 0 without the
    // directive.
    static std::int64_t particleCount(std::string_view source);
    static std::int64_t gridSize(std::string_view source);
    // Whether a line begins a definition `float2 sound(`.
    static bool definesSound(std::string_view source);
    // Whether `shade` has a parameter of type Inputs. Line comments are ignored.
    static bool usesInputs(std::string_view source);
};

} // namespace tarnwick
