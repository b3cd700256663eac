// A particle episode with trails, after its title.
#pragma once

#include <string_view>

namespace tarnwick::templates {

// clang-format off
inline constexpr std::string_view particlesShader = R"msl(
//
// @particles 20000
// @still 6
//
// A Tarnwick shader of particles. spawn() makes each particle once; update() moves it 60 times a second;
// place() says where it is and how large; ink() is the light that it adds to the trails; fade() is what a
// step leaves of the trails before it; shade() turns the trails into the picture.
// Each @param line below becomes a slider: // @param name default min max description

// @param speed 0.30 0.0 1.0 How fast the particles drift, in heights of the picture a second
// @param scale 3.0 1.0 8.0 How many eddies the current has
// @param trace 0.93 0.0 0.99 How much of the trails a step leaves
// @param size 0.004 0.001 0.02 Side of a particle, in heights of the picture

struct Particle {
    float2 at;   // from the centre of the picture, whose height is 1
    float2 way;  // heights a second
    float age;   // seconds until it starts again elsewhere
    float seed;  // its own number, 0 to 1
};

float hash(float2 q) {
    return fract(sin(dot(q, float2(127.1, 311.7))) * 43758.5453);
}

float2 anywhere(uint id, float turn) {
    float n = float(id) * 0.01 + turn * 0.37;
    return (float2(hash(float2(n, 1.3)), hash(float2(n, 7.9))) - 0.5) * float2(2.0, 1.1);
}

// A current that neither gathers nor spreads: waves that each push across the way they run.
float2 current(float2 q, float time) {
    float2 sum = float2(0.0);
    for (int i = 0; i < 4; i++) {
        float turn = 2.4 * float(i);
        float2 along = float2(cos(turn), sin(turn));
        float wave = cos((1.0 + 0.45 * float(i)) * dot(q, along) + 1.7 * float(i) + 0.15 * time);
        sum += float2(-along.y, along.x) * wave / (1.0 + 0.5 * float(i));
    }
    return sum;
}

Particle spawn(uint id, constant Params& p) {
    Particle q;
    q.seed = hash(float2(float(id) * 0.01, 4.7));
    q.at = anywhere(id, 0.0);
    q.way = float2(0.0);
    q.age = 6.0 * q.seed;
    return q;
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    float2 wanted = current(q.at * p.scale, u.time) * p.speed;
    q.way = mix(q.way, wanted, min(1.0, 4.0 * u.timeDelta));
    q.at += q.way * u.timeDelta;
    q.age -= u.timeDelta;
    if (q.age < 0.0) {
        q.at = anywhere(id, u.time);
        q.way = float2(0.0);
        q.age = 3.0 + 3.0 * q.seed;
    }
}

// x and y from 0 to 1 from the bottom left, then the side of the particle in heights of the picture.
float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    float2 at = q.at;
    at.x *= u.resolution.y / u.resolution.x;
    return float3(at + 0.5, p.size);
}

// `at` runs from -1 to 1 over the particle's square.
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float soft = saturate(1.0 - dot(at, at));
    float hot = saturate(length(q.way) / max(p.speed, 0.01) * 0.7);
    float3 colour = mix(float3(0.88, 0.26, 0.05), float3(1.0, 0.80, 0.48), hot * q.seed);
    float born = smoothstep(0.0, 0.6, q.age) * smoothstep(0.0, 0.4, length(q.way));
    return float4(colour * soft * 0.26 * (0.3 + born), 1.0);
}

float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    return previous.at(uv) * p.trace;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    float3 light = trails.at(uv).rgb;
    return float4(float3(0.035, 0.027, 0.030) + 1.0 - exp(-1.6 * light), 1.0);
})msl";
// clang-format on

} // namespace tarnwick::templates
