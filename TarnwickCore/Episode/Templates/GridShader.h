// A grid episode, after its title.
#pragma once

#include "TarnwickCore/Episode/Templates/Ramp.h"

#include <string_view>

namespace tarnwick::templates {

// clang-format off
inline constexpr std::string_view gridShader = R"msl(
//
// @grid 160
// @still 5
//
// A Tarnwick shader of a surface. corner() places each corner of a grid of 160 by 160 cells, whose `grid`
// runs from 0 to 1 both ways; shade() is the colour of the surface, background() what lies behind it.
// Each @param line below becomes a slider: // @param name default min max description

// @param height 0.22 0.0 0.6 Height of the waves
// @param waves 3.0 1.0 8.0 How many waves cross the surface
// @param speed 0.8 0.0 3.0 How fast they run
// @param orbit 0.12 -1.0 1.0 How fast the view goes round, in radians a second

struct Vertex {
    float4 position [[position]];
    float3 normal;
    float3 toEye;
    float rise; // -1 to 1
};

)msl" FURNEL_RAMP R"msl(
// How high the surface stands at a place from -1 to 1, before `height`.
float rise(float2 q, constant Uniforms& u, constant Params& p) {
    float t = u.time * p.speed;
    float ring = sin(length(q) * p.waves * 5.0 - t * 2.0);
    float cross_ = sin(q.x * p.waves * 2.1 + t) * sin(q.y * p.waves * 1.7 - 0.8 * t);
    return (0.6 * ring + 0.4 * cross_) * smoothstep(1.5, 0.3, length(q));
}

float3 surface(float2 q, constant Uniforms& u, constant Params& p) {
    return float3(q.x, p.height * rise(q, u, p), q.y);
}

Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    float2 q = grid * 2.0 - 1.0;
    const float e = 0.01;
    float3 here = surface(q, u, p);
    float3 across = surface(q + float2(e, 0.0), u, p) - here;
    float3 along = surface(q + float2(0.0, e), u, p) - here;

    // A camera that goes round the middle; its matrix has its right, up and forward directions as columns.
    float turn = 0.7 + u.time * p.orbit;
    float3 eye = float3(2.0 * sin(turn), 1.15, 2.0 * cos(turn));
    float3 forward = normalize(float3(0.0, -0.15, 0.0) - eye);
    float3 right = normalize(cross(forward, float3(0.0, 1.0, 0.0)));
    float3x3 camera = float3x3(right, cross(right, forward), forward);
    float3 seen = (here - eye) * camera; // a row times a matrix: the dot products with its columns

    // In clip space x and y are shares of w, and z goes from 0 (near) to w (far).
    const float near = 0.1, far = 20.0, zoom = 2.0;
    Vertex v;
    float wide = u.resolution.x / u.resolution.y;
    v.position = float4(seen.x * zoom / wide, seen.y * zoom, (seen.z - near) * far / (far - near), seen.z);
    v.normal = normalize(cross(along, across));
    v.toEye = eye - here;
    v.rise = rise(q, u, p);
    return v;
}

float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {
    float3 n = normalize(v.normal);
    float3 e = normalize(v.toEye);
    float3 sun = normalize(float3(0.5, 0.8, -0.4));
    float light = 0.25 + 0.75 * saturate(dot(n, sun));
    float shine = pow(saturate(dot(n, normalize(sun + e))), 60.0);
    float edge = pow(1.0 - saturate(dot(n, e)), 3.0);
    float3 colour = furnelRamp(0.30 + 0.35 * v.rise) * light;
    return float4(colour + float3(1.0, 0.85, 0.6) * (0.6 * shine + 0.15 * edge), 1.0);
}

float4 background(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(mix(float3(0.060, 0.040, 0.038), float3(0.020, 0.018, 0.024), uv.y), 1.0);
})msl";
// clang-format on

} // namespace tarnwick::templates
