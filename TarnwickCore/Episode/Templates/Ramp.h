// The colour ramp of the templates, a part of their text.
#pragma once

// The furnel ramp, [0, 1]: near-black, ember, gold, white-hot. A macro, since only literals can be
// concatenated at compile time.
// clang-format off
#define FURNEL_RAMP R"msl(float3 furnelRamp(float x) {
    x = saturate(x);
    float3 c = mix(float3(0.035, 0.027, 0.030), float3(0.88, 0.26, 0.05), smoothstep(0.0, 0.45, x));
    c = mix(c, float3(1.0, 0.69, 0.38), smoothstep(0.4, 0.8, x));
    return mix(c, float3(1.0, 0.95, 0.87), smoothstep(0.8, 1.0, x));
}
)msl"
// clang-format on
