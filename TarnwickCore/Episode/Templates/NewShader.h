// A fragment episode with parameters and sound, after its title.
#pragma once

#include "TarnwickCore/Episode/Templates/Ramp.h"

#include <string_view>

namespace tarnwick::templates {

// clang-format off
inline constexpr std::string_view newShader = R"msl(
//
// @still 4
//
// A Tarnwick shader. shade() runs once for every pixel; uv runs 0...1 from the bottom left, u.time is in seconds.
// Each @param line below becomes a slider: // @param name default min max description

// @param speed 0.6 0.0 3.0 How fast the bands drift
// @param bands 5.0 1.0 20.0 How many bands of colour cross the picture
// @param volume 0.4 0.0 1.0 Loudness of the sound

// The furnel ramp: near-black, ember, gold, white-hot.
)msl" FURNEL_RAMP R"msl(
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float2 q = uv - 0.5;
    q.x *= u.resolution.x / u.resolution.y;
    float r = length(q);
    float wave = 0.5 + 0.5 * sin(r * p.bands * 6.2831853 - u.time * p.speed * 3.0);
    float glow = exp(-2.5 * r);
    return float4(furnelRamp(glow * (0.35 + 0.65 * wave)), 1.0);
}

// A quiet hum that rises and falls with the bands. sound() is a pure function of t: no state between samples.
float2 sound(float t, constant Params& p) {
    float swell = 0.5 + 0.5 * sin(t * p.speed * 3.0);
    float tone = sin(6.2831853 * 110.0 * t) * 0.6 + sin(6.2831853 * 165.0 * t) * 0.4;
    float v = 0.08 * p.volume * swell * tone;
    return float2(v, v);
})msl";
// clang-format on

} // namespace tarnwick::templates
