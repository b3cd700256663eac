// Rose Window
//
// @episode 4 Rose Window
// @still 9
// @length 60
// @teaches Kaleidoscopes: folding a plane into one small triangle, here in a curved (hyperbolic) world
// @category Geometry
// @tags hyperbolic, kaleidoscope, tiling, palette
//
// A stained-glass window of a world in which space grows so fast towards the rim that endlessly many
// panes of equal size fit into a disk. Three mirrors make it: each point is reflected again and
// again until it lies in the one triangle between them, and only that triangle is painted.

// @param drift 0.30 0.0 1.0 How fast we travel through the window
// @param petals 7.0 5.0 9.0 Petals of each rose
// @param lead 0.5 0.1 1.5 Thickness of the lead between the panes
// @param glow 0.6 0.0 1.0 How strongly the sun stands behind the glass
// @param palette 0.0 0.0 2.0 Cobalt and ruby, autumn, or sea

constant int mirrors = 40; // reflections before we give up on a point close to the rim

constant float3 glass[3][5] = {
    {float3(0.03, 0.10, 0.52), float3(0.70, 0.03, 0.07), float3(0.98, 0.58, 0.08),
     float3(0.05, 0.36, 0.60), float3(0.42, 0.04, 0.36)},
    {float3(0.60, 0.10, 0.02), float3(0.95, 0.45, 0.04), float3(0.98, 0.80, 0.34),
     float3(0.32, 0.30, 0.04), float3(0.36, 0.03, 0.08)},
    {float3(0.01, 0.20, 0.32), float3(0.04, 0.50, 0.46), float3(0.80, 0.92, 0.70),
     float3(0.03, 0.09, 0.30), float3(0.10, 0.32, 0.62)}};

// The three mirrors of a kaleidoscope with angles pi/p, pi/q and a right angle: two straight lines
// through the middle and one circle that meets the rim of the disk squarely.
struct Mirrors {
    float2 line;   // normal of the slanted straight mirror
    float centre;  // of the round mirror, on the x axis
    float radius;
};

Mirrors mirrorsOf(float p, float q) {
    float a = 3.14159265 / p, b = 3.14159265 / q;
    Mirrors m;
    m.line = float2(sin(a), -cos(a));
    float s = cos(b) / sin(a); // centre over radius
    m.radius = rsqrt(s * s - 1.0);
    m.centre = s * m.radius;
    return m;
}

// Complex numbers as float2: the language of the disk.
float2 times(float2 a, float2 b) { return float2(a.x * b.x - a.y * b.y, a.x * b.y + a.y * b.x); }
float2 over(float2 a, float2 b) {
    return float2(dot(a, b), a.y * b.x - a.x * b.y) / dot(b, b);
}

// A walk in the disk: moves the point `to` into the middle. `scale` tells by how much lengths at z
// shrink, which keeps lines equally sharp everywhere.
float2 walk(float2 z, float2 to, thread float& scale) {
    float2 below = float2(1.0, 0.0) - times(float2(to.x, -to.y), z);
    scale *= (1.0 - dot(to, to)) / dot(below, below);
    return over(z - to, below);
}

// Reflects z into the triangle. Gives back how often; `turns` counts the round mirror alone.
int fold(thread float2& z, thread float& scale, thread int& turns, thread const Mirrors& m) {
    int count = 0;
    turns = 0;
    for (int i = 0; i < mirrors; i++) {
        bool moved = false;
        if (z.y < 0.0) {
            z.y = -z.y;
            count++;
            moved = true;
        }
        float side = dot(z, m.line);
        if (side < 0.0) {
            z -= 2.0 * side * m.line;
            count++;
            moved = true;
        }
        float2 d = z - float2(m.centre, 0.0);
        float square = dot(d, d);
        if (square < m.radius * m.radius) {
            float k = m.radius * m.radius / square;
            z = float2(m.centre, 0.0) + d * k;
            scale *= k;
            count++;
            turns++;
            moved = true;
        }
        if (!moved) break;
    }
    return count;
}

// How much a line of the given half width covers a pixel, d away from its middle.
float line(float d, float width, float pixel) {
    return smoothstep(width + pixel, width - pixel, abs(d));
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float side = min(u.resolution.x, u.resolution.y);
    float2 z = (uv - 0.5) * u.resolution / side * 2.12;
    float radius = length(z);
    float pixel = 2.12 / side;

    // The wall around the window, and what the window throws on it.
    float3 wall = float3(0.020, 0.018, 0.024) + float3(0.16, 0.09, 0.06) * exp(-5.0 * max(radius - 1.0, 0.0)) * p.glow;
    if (radius > 1.0 + pixel * 2.0) {
        float rings = line(radius - 1.035, 0.004, pixel) * 0.5;
        return float4(sqrt(wall * (1.0 - rings)), 1.0);
    }

    Mirrors m = mirrorsOf(floor(p.petals), 3.0);
    float scale = 1.0;
    float2 at = z / max(1.0, radius * 1.0005);
    float t = u.time * p.drift;
    float2 heading = 0.46 * float2(cos(t * 0.37), sin(t * 0.53));
    at = walk(at, heading, scale);
    float2 spin = float2(cos(t * 0.2), sin(t * 0.2));
    at = times(at, spin);

    int turns = 0;
    int count = fold(at, scale, turns, m);
    float size = pixel * scale; // of a pixel, in the triangle's own lengths

    // Paint the triangle: petals around the middle, a rim, an eye.
    float r = length(at);
    float toLine = dot(at, m.line);
    float toCircle = length(at - float2(m.centre, 0.0)) - m.radius;
    float petal = length(at - float2(0.22, 0.0)) - 0.145;
    float eye = r - 0.085;
    int pane = 0;
    if (eye < 0.0) pane = 2;
    else if (petal < 0.0) pane = 1;
    else if (toCircle < 0.055) pane = 3;
    else pane = (count & 1) != 0 ? 0 : 4;

    int set = clamp(int(p.palette + 0.5), 0, 2);
    float3 colour = glass[set][pane];
    // No two roses alike: the number of round mirrors shifts the light of each.
    float hue = 0.75 + 0.35 * sin(float(turns) * 2.4 + t);
    colour *= hue;

    float width = 0.008 * p.lead;
    float leads = max(max(line(eye, width, size), line(petal, width, size)),
                      max(line(toCircle - 0.055, width, size), line(toCircle, width, size)));
    leads = max(leads, line(toLine, width * 0.6, size) * step(0.0, petal));
    float fade = smoothstep(0.05, 0.25, size); // too fine to see: the panes' average
    colour = mix(colour, glass[set][4] * 0.6, fade);
    colour *= 1.0 - 0.93 * leads * (1.0 - fade);

    // The sun wanders behind the glass.
    float2 sun = 0.5 * float2(cos(t * 0.5 + 1.0), sin(t * 0.4));
    float light = 0.35 + 1.6 * p.glow * exp(-1.6 * length_squared(z - sun));
    colour *= light * 1.5;
    colour += float3(1.0, 0.75, 0.45) * 0.12 * p.glow * exp(-3.0 * length(z - sun));

    float rim = smoothstep(1.0 + pixel, 1.0 - pixel, radius);
    float3 stone = wall;
    colour = mix(stone, colour, rim);
    colour = 1.0 - exp(-1.7 * colour);
    return float4(sqrt(colour), 1.0);
}
