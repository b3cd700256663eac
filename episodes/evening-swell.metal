// Evening Swell
//
// @episode 7 Evening Swell
// @grid 256
// @still 14
// @length 60
// @teaches Waves that travel: points of a grid on circles, and water that mirrors the sky by the angle
// @category Water
// @tags gerstner, fresnel, sunset, sound
//
// The open sea a little after the sun has touched it. Every point of the grid goes round a circle,
// which is what water does under a wave; seven trains of waves add up to a swell. What we see of it
// is nearly all sky: water mirrors more of it the flatter we look.

// @param swell 0.8 0.0 1.6 How high the sea runs
// @param wind 0.6 0.0 1.2 Small waves on the large ones
// @param speed 0.8 0.0 2.0 How fast time passes
// @param sun 0.10 0.03 0.35 How high the sun stands
// @param volume 0.5 0.0 1.0 Loudness of the surf

struct Vertex {
    float4 position [[position]];
    float3 place;  // in metres, the eye above the origin
    float2 rest;   // where the water is when it is calm
    float2 slope;  // of the long waves
    float crest;   // how much the waves are squeezed here, above 0 near a crest
};

constant float3 eye = float3(0.0, 3.4, 0.0);

// A train of waves: the direction it goes to, its length, its height and where it begins.
struct Train {
    float2 direction;
    float length, height, phase;
};
constant int long_ = 4; // trains whose slope the grid's points carry
constant Train trains[7] = {{float2(0.30, -0.95), 38.0, 0.62, 0.0}, {float2(-0.16, -0.99), 27.0, 0.40, 1.9},
                            {float2(0.74, -0.67), 17.0, 0.22, 4.1}, {float2(-0.55, -0.83), 11.5, 0.15, 2.7},
                            {float2(0.10, -0.99), 7.3, 0.095, 0.6}, {float2(0.62, -0.78), 4.7, 0.060, 5.2},
                            {float2(-0.72, -0.69), 3.1, 0.038, 3.3}};

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Noise with its slope: (value, slope along x, slope along y).
float3 sloped(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float2 ds = 30.0 * f * f * (f * (f - 2.0) + 1.0);
    float2 e = float2(0.0, 1.0);
    float a = hash(cell), b = hash(cell + e.yx), c = hash(cell + e.xy), d = hash(cell + e.yy);
    float k = a - b - c + d;
    return float3(a + (b - a) * s.x + (c - a) * s.y + k * s.x * s.y,
                  ds * (float2(b - a, c - a) + k * s.yx));
}

float noise(float2 q) { return sloped(q).x; }

// The horizon lies a little above the middle; the camera nods with the swell.
float pitch(float t) { return -0.085 + 0.010 * sin(t * 0.50) + 0.004 * sin(t * 0.83); }
float roll(float t) { return 0.012 * sin(t * 0.37 + 1.0); }

float2 rotate(float2 v, float a) {
    float c = cos(a), s = sin(a);
    return float2(v.x * c - v.y * s, v.x * s + v.y * c);
}

// From the camera's directions to the world's and back.
float3 outward(float3 d, float t) {
    d.xy = rotate(d.xy, roll(t));
    d.yz = rotate(d.yz, -pitch(t));
    return d;
}
float3 inward(float3 d, float t) {
    d.yz = rotate(d.yz, pitch(t));
    d.xy = rotate(d.xy, -roll(t));
    return d;
}

float2 focus(float2 resolution) { return 1.05 * min(resolution.x, resolution.y) / resolution * 2.0; }

float3 sunAt(constant Params& p) { return normalize(float3(0.20, p.sun, 1.0)); }

// The sky, by the direction we look in; also what the water mirrors.
float3 skyLight(float3 d, constant Params& p) {
    float3 sun = sunAt(p);
    float up = max(d.y, 0.0);
    float near = max(dot(d, sun), 0.0);
    float3 colour = mix(float3(1.00, 0.43, 0.17), float3(0.42, 0.30, 0.42), smoothstep(0.0, 0.20, up));
    colour = mix(colour, float3(0.085, 0.15, 0.33), smoothstep(0.10, 0.62, up));
    colour *= 0.42 + 0.58 * smoothstep(-0.35, 0.98, near);
    float n2 = near * near, n8 = n2 * n2 * n2 * n2;
    colour += float3(1.0, 0.50, 0.17) * (0.55 * n8 * n8 + 0.9 * pow(near, 140.0));
    return colour;
}

Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    float t = u.time * p.speed;
    // Rows lie closer together near us: the grid is a fan whose far edge is the horizon.
    float distance_ = 1.4 * pow(420.0, grid.y);
    float wide = max(1.0, u.resolution.x / u.resolution.y) * 0.85;
    float2 rest = float2((grid.x * 2.0 - 1.0) * (distance_ * wide + 5.0), distance_);
    float3 place = float3(rest.x, 0.0, rest.y);
    float2 slope = float2(0.0);
    float squeeze = 0.0;
    float spacing = distance_ * 0.022; // of the rows; shorter waves cannot be drawn and are left out
    for (int i = 0; i < 7; i++) {
        Train train = trains[i];
        float k = 6.2831853 / train.length;
        float height = train.height * (i < 3 ? p.swell : p.swell * 0.4 + p.wind * 0.8);
        height *= smoothstep(0.5, 0.16, spacing / train.length);
        float phase = dot(train.direction, rest) * k - sqrt(9.81 * k) * t + train.phase;
        float s = sin(phase), c = cos(phase);
        place.y += height * c;
        place.xz -= train.direction * (height * 0.85 * s);
        squeeze += height * k * c;
        if (i < long_) slope += train.direction * (k * height * s);
    }
    Vertex v;
    float3 view = inward(place - eye, t);
    float2 f = focus(u.resolution);
    v.position = float4(view.xy * f, view.z - 0.3, view.z); // depth from 0 at 0.3 m to 1 far away
    v.place = place;
    v.rest = rest;
    v.slope = slope;
    v.crest = squeeze;
    return v;
}

// How the surface leans at a place: the swell's own slope, and small waves that the grid has no
// points for.
float3 normalAt(Vertex v, float t, float away, constant Params& p) {
    float2 slope = v.slope;
    for (int i = long_; i < 7; i++) {
        Train train = trains[i];
        float k = 6.2831853 / train.length;
        float height = train.height * (p.swell * 0.4 + p.wind * 0.8);
        height *= smoothstep(1.0, 0.2, away * 0.006 / train.length);
        float phase = dot(train.direction, v.rest) * k - sqrt(9.81 * k) * t + train.phase;
        slope += train.direction * (k * height * sin(phase));
    }
    // Ripples: two layers of noise, drawn out along their crests, each on its own way.
    float fine = p.wind * 0.16 / (1.0 + away * 0.016);
    float2 q = rotate(v.rest, 0.35) * float2(0.75, 1.9) + float2(0.3, -1.3) * t;
    slope += fine * rotate(sloped(q).yz * float2(0.4, 1.0), -0.35);
    q = rotate(v.rest, -0.5) * float2(1.9, 4.6) + float2(-0.6, -2.1) * t;
    slope += fine * 0.9 * rotate(sloped(q).yz * float2(0.4, 1.0), 0.5);
    return normalize(float3(slope.x, 1.0, slope.y));
}

float3 finish(float3 colour, float2 at, constant Uniforms& u) {
    colour = 1.0 - exp(-1.65 * colour);
    colour = pow(colour, float3(0.80));
    float2 uv = at / u.resolution - 0.5;
    colour *= 1.0 - 0.55 * dot(uv, uv);
    return colour + (hash(at) - 0.5) / 255.0;
}

float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {
    float t = u.time * p.speed;
    float3 way = v.place - eye;
    float away = length(way);
    float3 d = way / away;
    float3 n = normalAt(v, t, away, p);
    // A wave's far side is hidden by the wave: what we do see leans towards us.
    n = normalize(n - d * max(dot(n, d) + 0.02, 0.0) * 1.4);
    float facing = saturate(-dot(n, d));
    float mirror = 0.02 + 0.98 * pow(1.0 - facing, 5.0);
    float3 up = reflect(d, n);
    up.y = abs(up.y);
    float3 sun = sunAt(p);

    float3 colour = skyLight(up, p) * mirror;
    // Light that has gone through a crest comes out green; the depth is nearly black.
    float thin = smoothstep(0.25, 1.3, v.place.y + 0.5 * v.crest) * p.swell;
    float through = saturate(dot(d, sun)) * thin;
    colour += (1.0 - mirror) * (float3(0.004, 0.020, 0.030) + float3(0.02, 0.16, 0.13) * (through * 0.75 + 0.04 * n.y));
    // Each small facet that happens to point the right way is a spark of the sun.
    float3 h = normalize(sun - d);
    float spread = mix(900.0, 140.0, saturate(away / 160.0));
    colour += float3(1.0, 0.58, 0.24) * pow(saturate(dot(n, h)), spread) * 3.6 * smoothstep(0.0, 0.08, p.sun);
    // Foam where crests are squeezed, torn by the wind.
    float foam = smoothstep(0.50, 0.95, v.crest) * p.wind;
    if (foam > 0.01) foam *= smoothstep(0.35, 0.8, noise(v.rest * float2(2.2, 3.1)) * 0.6 + noise(v.rest * 8.0) * 0.5) / (1.0 + away * 0.02);
    colour = mix(colour, float3(0.50, 0.36, 0.34), saturate(foam) * 0.7);
    float veil = 1.0 - exp(-away * away * 0.000011);
    if (veil > 0.02) colour = mix(colour, skyLight(normalize(float3(d.x, 0.004, d.z)), p) * 0.9, veil);
    return float4(finish(colour, v.position.xy, u), 1.0);
}

float4 background(float2 uv, constant Uniforms& u, constant Params& p) {
    float t = u.time * p.speed;
    float2 ndc = uv * 2.0 - 1.0;
    float3 d = outward(normalize(float3(ndc / focus(u.resolution), 1.0)), t);
    float3 colour = skyLight(d, p);
    if (d.y < -0.03) return float4(colour, 1.0); // the sea covers it
    // Bars of cloud far away, lit from below: thin ones glow, thick ones are dark.
    float2 q = d.xz / (max(d.y, 0.0) + 0.10);
    q = q * float2(0.55, 1.25) + float2(t * 0.010, 0.0);
    float cloud = 0.0, weight = 0.55;
    for (int i = 0; i < 5; i++) {
        cloud += weight * noise(q);
        q = rotate(q, 0.5) * 2.1 + 5.0;
        weight *= 0.5;
    }
    float bank = smoothstep(0.50, 0.82, cloud) * smoothstep(0.0, 0.10, d.y) * smoothstep(0.80, 0.25, d.y);
    float near = max(dot(d, sunAt(p)), 0.0);
    float3 lit = mix(float3(0.30, 0.16, 0.22), float3(1.25, 0.50, 0.22), pow(near, 4.0));
    float edge = bank * (1.0 - bank) * 3.0;
    colour = mix(colour, lit * (0.28 + edge), bank * 0.8);
    // The sun, flattened by the air.
    float3 sun = sunAt(p);
    float disc = length(float2(dot(d, normalize(cross(float3(0, 1, 0), sun))), (d.y - sun.y) * 1.12));
    float pixel = 1.0 / min(u.resolution.x, u.resolution.y);
    colour += float3(1.0, 0.62, 0.30) * smoothstep(0.052 + pixel, 0.052 - pixel, disc) * 2.4 * (1.0 - 0.75 * bank);
    float2 at = float2(uv.x, 1.0 - uv.y) * u.resolution;
    return float4(finish(colour, at, u), 1.0);
}

// Surf, from afar: breath after breath of noise, low as it swells and brighter as it runs out.
float grain(float x) {
    float cell = floor(x);
    float f = x - cell;
    return mix(hash(float2(cell, 1.0)), hash(float2(cell + 1.0, 1.0)), f * f * (3.0 - 2.0 * f)) * 2.0 - 1.0;
}

float2 sound(float t, constant Params& p) {
    float2 out = float2(0.0);
    float s = fmod(t, 20.0); // small enough to tell samples apart
    for (int i = 0; i < 3; i++) {
        float period = 7.3 + 2.9 * float(i);
        float phase = fract(t / period + 0.37 * float(i));
        float swell = smoothstep(0.0, 0.45, phase) * smoothstep(1.0, 0.5, phase);
        float hiss = mix(grain(s * 1400.0 + float(i) * 4000.0), grain(s * 6100.0 + float(i) * 900.0), phase);
        float rumble = grain(s * 140.0 + float(i) * 900.0);
        float v = swell * (0.30 * rumble + 0.20 * hiss * phase);
        float side = 0.5 + 0.35 * (float(i) - 1.0);
        out += v * float2(1.0 - side, side);
    }
    return 0.6 * p.volume * out;
}
