// The colour ramp of the templates, a part of their text.
#pragma once

// The furnel ramp, [0, 1]: near-black, ember, gold, white-hot. A macro, since only literals can be
// concatenated at compile time.
// clang-format off
#define FURNEL_RAMP \
    "float3 furnelRamp(float x) {\n" \
    "    x = saturate(x);\n" \
    "    float3 c = mix(float3(0.035, 0.027, 0.030), float3(0.88, 0.26, 0.05), smoothstep(0.0, 0.45, x));\n" \
    "    c = mix(c, float3(1.0, 0.69, 0.38), smoothstep(0.4, 0.8, x));\n" \
    "    return mix(c, float3(1.0, 0.95, 0.87), smoothstep(0.8, 1.0, x));\n" \
    "}\n"
// clang-format on
