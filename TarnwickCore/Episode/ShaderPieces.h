// The host code around an episode, in parts. Blanks and line breaks at the ends of a text are part
// of it: the texts are joined without separators.
#pragma once

#include <string_view>

namespace tarnwick::pieces {

// clang-format off

// The beginning of every program; the records follow.
inline constexpr std::string_view headerOpening = R"msl(#include <metal_stdlib>
using namespace metal;

)msl";

// The body of Params follows.
inline constexpr std::string_view records = R"msl(struct Uniforms {
    float2 resolution;
    float  time;
    float  timeDelta;
    float2 mouse;
    uint   frame;
    uint   pad;
};

struct Params {
)msl";

// Ends Params; the name of the full-screen vertex function follows.
inline constexpr std::string_view headerVertex = R"msl(
};

struct TWVertexOut {
    float4 position [[position]];
    float2 uv;
};

vertex TWVertexOut )msl";

// The full-screen vertex function: one triangle that covers the picture.
inline constexpr std::string_view headerClosing = R"msl((uint vid [[vertex_id]]) {
    float2 p = float2((vid << 1) & 2, vid & 2);
    TWVertexOut o;
    o.position = float4(p * 2.0 - 1.0, 0.0, 1.0);
    o.uv = p;
    return o;
}
)msl";

// The record with which a particle episode reads its trails.
inline constexpr std::string_view trailsStruct = R"msl(
struct Trails {
    texture2d<float> image;
    float4 at(float2 uv) const {
        constexpr sampler s(filter::linear, address::clamp_to_edge);
        return image.sample(s, float2(uv.x, 1.0 - uv.y));
    }
};
)msl";

// The record with which an episode reads sound, spectrum, channels and its previous frame.
inline constexpr std::string_view inputsStruct = R"msl(
struct Inputs {
    float4 audio;
    texture2d<float> spectrum;
    texture2d<float> channel0;
    texture2d<float> channel1;
    texture2d<float> channel2;
    texture2d<float> channel3;
    texture2d<float> last;

    float4 channel(int i, float2 uv) const {
        constexpr sampler s(filter::linear, address::repeat);
        float2 at = float2(uv.x, 1.0 - uv.y);
        switch (i) {
            case 0: return channel0.sample(s, at);
            case 1: return channel1.sample(s, at);
            case 2: return channel2.sample(s, at);
            default: return channel3.sample(s, at);
        }
    }
    float4 previous(float2 uv) const {
        constexpr sampler s(filter::linear, address::clamp_to_edge);
        return last.sample(s, float2(uv.x, 1.0 - uv.y));
    }
    float band(float x) const {
        constexpr sampler s(filter::linear, address::clamp_to_edge);
        return spectrum.sample(s, float2(clamp(x, 0.0, 1.0), 0.5)).r;
    }
};
)msl";

// The tail of a fragment episode; tw_fragment follows.
inline constexpr std::string_view fragmentOpening = R"msl(
#line 1 "tw_host"
fragment float4 )msl";

inline constexpr std::string_view fragmentPlain = R"msl((TWVertexOut in [[stage_in]],
                                constant Uniforms& u [[buffer(0)]],
                                constant Params& p [[buffer(1)]]) {
    return shade(in.uv, u, p);
})msl";

// The same with Inputs; the index of the audio buffer follows.
inline constexpr std::string_view fragmentInputs = R"msl((TWVertexOut in [[stage_in]],
                                constant Uniforms& u [[buffer(0)]],
                                constant Params& p [[buffer(1)]],
                                constant float4& audio [[buffer()msl";

// The index of the spectrum texture follows.
inline constexpr std::string_view fragmentSpectrum = R"msl()]],
                                texture2d<float> spectrum [[texture()msl";

// After the index of the previous frame's texture.
inline constexpr std::string_view fragmentInputsClosing = R"msl()]]) {
    return shade(in.uv, u, p, Inputs{audio, spectrum, c0, c1, c2, c3, last});
})msl";

// The tail of a grid episode; tw_grid_vertex follows.
inline constexpr std::string_view gridOpening = R"msl(
#line 1 "tw_host"
constant float2 tw_square[6] = { float2(0, 0), float2(1, 0), float2(0, 1), float2(1, 0), float2(1, 1), float2(0, 1) };

vertex Vertex )msl";

// tw_grid_fragment follows.
inline constexpr std::string_view gridVertex = R"msl((uint vid [[vertex_id]],
                                constant Uniforms& u [[buffer(0)]],
                                constant Params& p [[buffer(1)]],
                                constant uint& cells [[buffer(2)]]) {
    uint square = vid / 6;
    float2 at = float2(square % cells, square / cells) + tw_square[vid % 6];
    return corner(at / float(cells), u, p);
}

fragment float4 )msl";

inline constexpr std::string_view gridFragment = R"msl((Vertex in [[stage_in]],
                                    constant Uniforms& u [[buffer(0)]],
                                    constant Params& p [[buffer(1)]]) {
    return shade(in, u, p);
}
)msl";

// Opens each further fragment function of a grid episode; its name follows.
inline constexpr std::string_view nextFragment = R"msl(
fragment float4 )msl";

inline constexpr std::string_view gridBackground = R"msl((TWVertexOut in [[stage_in]],
                                 constant Uniforms& u [[buffer(0)]],
                                 constant Params& p [[buffer(1)]]) {
    return background(in.uv, u, p);
})msl";

// Shows the picture that the grid was drawn into.
inline constexpr std::string_view gridPicture = R"msl((TWVertexOut in [[stage_in]],
                                texture2d<float> picture [[texture(0)]]) {
    constexpr sampler s(filter::nearest, address::clamp_to_edge);
    return picture.sample(s, float2(in.uv.x, 1.0 - in.uv.y));
})msl";

// The tail of a particle episode; tw_particle_size follows.
inline constexpr std::string_view particleOpening = R"msl(
#line 1 "tw_host"
kernel void )msl";

// tw_spawn follows.
inline constexpr std::string_view particleSize = R"msl((device uint* out [[buffer(0)]], uint i [[thread_position_in_grid]]) {
    if (i == 0) out[0] = sizeof(Particle);
}

kernel void )msl";

// tw_update follows.
inline constexpr std::string_view particleSpawn = R"msl((device Particle* ps [[buffer(0)]],
                          constant Params& p [[buffer(1)]],
                          constant uint& count [[buffer(2)]],
                          uint i [[thread_position_in_grid]]) {
    if (i >= count) return;
    ps[i] = spawn(i, p);
}

kernel void )msl";

// tw_fade follows.
inline constexpr std::string_view particleUpdate = R"msl((device Particle* ps [[buffer(0)]],
                           constant Uniforms& u [[buffer(1)]],
                           constant Params& p [[buffer(2)]],
                           constant uint& count [[buffer(3)]],
                           uint i [[thread_position_in_grid]]) {
    if (i >= count) return;
    Particle q = ps[i];
    update(q, i, u, p);
    ps[i] = q;
}

fragment float4 )msl";

// One of the two bodies follows.
inline constexpr std::string_view particleFade = R"msl((TWVertexOut in [[stage_in]],
                            texture2d<float> previous [[texture(0)]],
                            constant Uniforms& u [[buffer(0)]],
                            constant Params& p [[buffer(1)]]) {
    )msl";

inline constexpr std::string_view fadeByEpisode = R"msl(return fade(in.uv, Trails{previous}, u, p);)msl";

inline constexpr std::string_view fadeToNothing = R"msl(return float4(0.0);)msl";

// tw_dot_vertex follows.
inline constexpr std::string_view dotRecord = R"msl(
}

struct TWDotOut {
    float4 position [[position]];
    float size [[point_size]];
    uint id [[flat]];
};

vertex TWDotOut )msl";

// tw_dot_fragment follows.
inline constexpr std::string_view dotVertex = R"msl((uint id [[vertex_id]],
                                 const device Particle* ps [[buffer(0)]],
                                 constant Uniforms& u [[buffer(1)]],
                                 constant Params& p [[buffer(2)]]) {
    float3 w = place(ps[id], u, p);
    TWDotOut o;
    o.position = float4(w.xy * 2.0 - 1.0, 0.0, 1.0);
    o.size = clamp(w.z * u.resolution.y, 0.0, 511.0);
    o.id = id;
    return o;
}

fragment float4 )msl";

// tw_fragment follows.
inline constexpr std::string_view dotFragment = R"msl((TWDotOut in [[stage_in]],
                                   float2 pc [[point_coord]],
                                   const device Particle* ps [[buffer(0)]],
                                   constant Uniforms& u [[buffer(1)]],
                                   constant Params& p [[buffer(2)]]) {
    return ink(ps[in.id], float2(pc.x * 2.0 - 1.0, 1.0 - pc.y * 2.0), u, p);
}

fragment float4 )msl";

inline constexpr std::string_view particlePicture = R"msl((TWVertexOut in [[stage_in]],
                                texture2d<float> trails [[texture(0)]],
                                constant Uniforms& u [[buffer(0)]],
                                constant Params& p [[buffer(1)]]) {
    return shade(in.uv, u, p, Trails{trails});
})msl";

// The sound kernel of any kind; tw_sound follows.
inline constexpr std::string_view soundOpening = R"msl(

struct SoundUniforms { float start; float rate; uint count; uint pad; };
kernel void )msl";

inline constexpr std::string_view soundKernel = R"msl((device float2* out [[buffer(0)]],
                         constant SoundUniforms& su [[buffer(1)]],
                         constant Params& p [[buffer(2)]],
                         uint i [[thread_position_in_grid]]) {
    if (i >= su.count) return;
    out[i] = clamp(sound(su.start + float(i) / su.rate, p), -1.0, 1.0);
})msl";

// clang-format on

} // namespace tarnwick::pieces
