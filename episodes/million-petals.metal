// A Million Petals
//
// @episode 12 A Million Petals
// @particles 1000000
// @still 1
// @length 60
// @teaches A strange attractor: one short formula, applied to a million points again and again, draws what no point follows
// @category Geometry
// @tags particles, chaos, attractor, depth of field
//
// Each point hops from place to place, sixty times a second, by three sines and three cosines. Where
// it lands next looks like chance, but all million of them together stay on one folded, endlessly
// thin shape. The numbers in the formula drift, and the shape with them. Points out of focus are
// thrown about a little: a million of them make a soft blur.

// @param drift 0.5 0.0 2.0 How fast the shape changes
// @param turn 0.5 0.0 2.0 How fast it turns
// @param focus 0.6 0.0 1.5 How shallow the depth of field is
// @param warmth 0.5 0.0 1.0 From moonlight to rose
// @param light 1.0 0.2 3.0 Brightness

struct Particle {
    float4 at; // where it is, within about 2.6 of the middle, and how far it came on its last hop
};

constant float ground = 0.165; // of the picture's height: where the black glass begins

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// A number for a whole number, the same everywhere: from 0 to 1.
float chance(uint n) {
    n = (n ^ 61u) ^ (n >> 16);
    n *= 9u;
    n ^= n >> 4;
    n *= 0x27d4eb2du;
    n ^= n >> 15;
    return float(n >> 8) / 16777216.0;
}

// The six numbers of the formula at a time. Outside of these bounds the shape falls together.
struct Recipe {
    float a, b, c, d, e, f;
};

Recipe recipeAt(float t) {
    Recipe r;
    r.a = 1.575 + 0.045 * sin(t * 0.31);
    r.b = -1.855 - 0.050 * sin(t * 0.23 + 0.4);
    r.c = 1.555 + 0.050 * sin(t * 0.19 + 1.5);
    r.d = 0.985 + 0.032 * sin(t * 0.27 + 2.0);
    r.e = 0.930 + 0.250 * sin(t * 0.17);
    r.f = 0.760 + 0.120 * sin(t * 0.13 + 1.0);
    return r;
}

float3 hop(float3 q, Recipe r) {
    return float3(sin(r.a * q.y) + r.c * cos(r.a * q.x), sin(r.b * q.x) + r.d * cos(r.b * q.y),
                  sin(r.e * q.x) + r.f * cos(r.e * q.z));
}

float3 anywhere(uint n) {
    return float3(chance(n), chance(n + 0x9e3779b9u), chance(n ^ 0x85ebca6bu)) * 2.0 - 1.0;
}

Particle spawn(uint id, constant Params& p) {
    float3 q = anywhere(id * 3u + 1u);
    Recipe r = recipeAt(0.0);
    for (int i = 0; i < 24; i++) q = hop(q, r);
    return Particle{float4(q, 0.5)};
}

void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    Recipe r = recipeAt(u.time * p.drift);
    float3 from = q.at.xyz;
    // One in a hundred begins anew, so that none gets caught in a small ring.
    uint turn = id + u.frame * 7919u;
    if (turn % 97u == 0u) {
        from = anywhere(id * 3u + u.frame);
        for (int i = 0; i < 6; i++) from = hop(from, r);
    }
    float3 to = hop(from, r);
    q.at = float4(to, distance(to, from));
}

float2 rotate(float2 v, float a) {
    float c = cos(a), s = sin(a);
    return float2(v.x * c - v.y * s, v.x * s + v.y * c);
}

float3 place(Particle q, constant Uniforms& u, constant Params& p) {
    float t = u.time * p.turn;
    float3 at = q.at.xyz - float3(-0.50, -0.06, 0.25);
    at.xz = rotate(at.xz, 0.75 * sin(t * 0.21) + 0.25);
    at.yz = rotate(at.yz, 0.16 * sin(t * 0.17 + 1.0));
    float near = 1.0 / (5.6 + at.z);
    // Out of focus a point may stand anywhere on a small disk, by a number of its own.
    uint own = as_type<uint>(q.at.x) ^ (as_type<uint>(q.at.y) << 1);
    float angle = 6.2831853 * chance(own), radius = sqrt(chance(own + 77u));
    float blur = p.focus * 0.030 * abs(at.z + 0.6) * near * 5.0;
    float2 shown = at.xy * near * 0.92 + blur * radius * float2(cos(angle), sin(angle)) * 0.45;
    return float3(0.5 + shown.x * u.resolution.y / u.resolution.x, 0.575 + shown.y, 1.0 / u.resolution.y);
}

// A point is one pixel, and as bright as pixels are large.
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) {
    float far = saturate(q.at.w / 3.4);
    float3 colour = mix(float3(0.16, 0.40, 1.00), float3(1.00, 0.27, 0.42), smoothstep(0.10, 0.75, far + 0.5 * (p.warmth - 0.5)));
    colour = mix(colour, float3(1.00, 0.66, 0.26), smoothstep(0.55, 1.00, far));
    float depth = exp(-0.34 * (q.at.z + 0.4));
    float bright = u.resolution.y / 720.0;
    return float4(colour * depth * bright * bright * 0.030, 1.0);
}

float4 fade(float2 uv, Trails previous, constant Uniforms& u, constant Params& p) {
    return previous.at(uv) * 0.91;
}

// The shape's light, and what a lens spreads of it.
float3 lightAt(float2 uv, float spread, float2 square, Trails trails) {
    float3 sum = float3(0.0);
    for (int i = 0; i < 8; i++) {
        float a = float(i) * 2.39996;
        sum += trails.at(uv + spread * sqrt((float(i) + 0.5) / 8.0) * float2(cos(a), sin(a)) * square).rgb;
    }
    return sum / 8.0;
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails trails) {
    float2 square = float2(u.resolution.y / u.resolution.x, 1.0);
    float2 q = (uv - float2(0.5, 0.575)) / square;
    float3 colour = mix(float3(0.012, 0.014, 0.024), float3(0.003, 0.003, 0.006), smoothstep(0.0, 0.75, length(q)));
    float3 light;
    if (uv.y > ground) {
        light = trails.at(uv).rgb;
        light += 0.30 * lightAt(uv, 0.030, square, trails);
    } else {
        // Black glass: the shape upside down, dimmer and softer the farther down.
        float below = ground - uv.y;
        float2 at = float2(uv.x, ground + 0.015 + below * 1.5);
        light = lightAt(at, 0.004 + 0.05 * below, square, trails) * (0.42 - 1.6 * below);
        light = max(light, 0.0);
        colour = colour * 0.5 + float3(0.006, 0.007, 0.011) * exp(-below * 60.0);
    }
    light *= p.light * 0.95;
    // Bright places grow by the logarithm, as on film, and lose their colour.
    float strength = dot(light, float3(0.30, 0.45, 0.25));
    float shown = log2(1.0 + 2.4 * strength) * 0.235;
    float3 hue = light / max(strength, 1e-4);
    hue = mix(hue, float3(1.0, 0.96, 0.90), smoothstep(0.45, 1.25, shown));
    colour += hue * shown * (0.50 + 0.90 * shown);
    colour = 1.0 - exp(-1.7 * colour);
    colour *= 1.0 - 0.6 * dot(uv - 0.5, uv - 0.5);
    colour = pow(colour, float3(0.86));
    return float4(colour + (hash(uv * u.resolution) - 0.5) / 255.0, 1.0);
}
