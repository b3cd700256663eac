// A fragment episode that reads Inputs, after its title.
#pragma once

#include "TarnwickCore/Episode/Templates/Ramp.h"

#include <string_view>

namespace tarnwick::templates {

// clang-format off
inline constexpr std::string_view inputsShader = R"msl(
//
// @still 4
//
// A Tarnwick shader with Inputs.
//   in.audio          (low, mid, high, level), each 0...1
//   in.band(x)        the spectrum at x, 0 (low) to 1 (high)
//   in.channel(i, uv) channel i: an image, a video or the camera
//   in.previous(uv)   the frame this shader drew last

// @param trails 0.85 0.0 0.98 How much of the last frame stays
// @param punch 1.5 0.0 4.0 How hard the low end pushes the rings
// @param picture 0.3 0.0 1.0 How much of channel 0 shows through

)msl" FURNEL_RAMP R"msl(
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float2 q = uv - 0.5;
    q.x *= u.resolution.x / u.resolution.y;
    float r = length(q);
    // The spectrum around the circle, the low end in the rings' radius.
    float a = atan2(q.y, q.x) / 6.2831853 + 0.5;
    float ring = smoothstep(0.02, 0.0, abs(r - 0.18 - 0.12 * in.audio.x * p.punch - 0.05 * in.band(a)));
    float glow = exp(-3.0 * r) * (0.25 + in.audio.w);
    float3 c = furnelRamp(glow + ring);
    c += in.channel(0, uv).rgb * p.picture;
    // Trails: the last frame, a little smaller, faded.
    float3 last = in.previous(0.5 + (uv - 0.5) * 0.99).rgb * p.trails;
    return float4(max(c, last), 1.0);
})msl";
// clang-format on

} // namespace tarnwick::templates
