// A fragment episode with a tune of its own, which its picture hears, after its title.
#pragma once

#include "TarnwickCore/Episode/Templates/Ramp.h"

#include <string_view>

namespace tarnwick::templates {

// clang-format off
inline constexpr std::string_view soundShader = R"msl(
//
// @still 4
//
// A Tarnwick shader that is heard and hears itself. sound() gives one stereo sample at the second t, from -1
// to 1: a pure function of t, without state between samples. shade() draws what is playing:
//   in.audio          (low, mid, high, level), each 0...1
//   in.band(x)        the spectrum at x, 0 (low) to 1 (high)
// Each @param line below becomes a slider: // @param name default min max description

// @param tempo 96 40 180 Beats a minute
// @param echo 0.4 0.0 0.8 Loudness of the echoes
// @param bass 0.6 0.0 1.0 Loudness of the bass
// @param volume 0.5 0.0 1.0 Loudness of it all

// Eight notes of a scale, in half tones above the A of 220 Hz, two a beat.
constant float notes[8] = {0.0, 7.0, 12.0, 15.0, 10.0, 7.0, 3.0, 5.0};

float pitch(float halfTones) {
    return 220.0 * exp2(halfTones / 12.0);
}

// A bell that was struck `age` seconds ago: partials that are no whole multiples, the higher the shorter.
float bell(float frequency, float age) {
    float w = 6.2831853 * frequency * age;
    float tone = sin(w) * exp(-3.0 * age) + 0.5 * sin(2.76 * w) * exp(-5.0 * age) +
                 0.25 * sin(5.40 * w) * exp(-9.0 * age);
    return age < 0.0 ? 0.0 : tone * (1.0 - exp(-400.0 * age));
}

// All bells that ring at t: the notes of the last two beats.
float bells(float t, constant Params& p) {
    float step = 30.0 / p.tempo; // seconds a note
    float last = floor(t / step);
    float sum = 0.0;
    for (int i = 0; i < 4; i++) {
        float n = last - float(i);
        if (n < 0.0) break;
        sum += bell(pitch(notes[int(n) % 8]), t - n * step);
    }
    return sum;
}

float2 sound(float t, constant Params& p) {
    float step = 30.0 / p.tempo;
    float2 v = float2(bells(t, p));
    // Two echoes, three and five notes late, one on each side.
    v += p.echo * float2(bells(t - 3.0 * step, p), 0.6 * bells(t - 5.0 * step, p));
    // The bass follows the bar: four beats a note.
    float bar = floor(t / (8.0 * step));
    float root = pitch(int(bar) % 2 == 0 ? -24.0 : -28.0);
    float age = t - bar * 8.0 * step;
    v += p.bass * sin(6.2831853 * root * age) * exp(-0.8 * age) * (1.0 - exp(-60.0 * age));
    return 0.28 * p.volume * v;
}

)msl" FURNEL_RAMP R"msl(
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float2 q = uv - 0.5;
    q.x *= u.resolution.x / u.resolution.y;
    float r = length(q);
    // The spectrum twice around a circle, low notes below.
    float around = abs(atan2(q.x, -q.y)) / 3.1415927;
    float ray = in.band(around);
    float edge = 0.20 + 0.05 * in.audio.x + 0.22 * ray;
    float ring = smoothstep(0.012, 0.0, abs(r - edge));
    float inside = smoothstep(edge, edge - 0.25, r) * 0.35;
    float glow = exp(-4.0 * r) * (0.15 + 0.8 * in.audio.w);
    return float4(furnelRamp(glow + inside * (0.3 + ray) + ring * (0.35 + 0.6 * ray)), 1.0);
})msl";
// clang-format on

} // namespace tarnwick::templates
