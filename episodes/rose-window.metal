// Rose Window
//
// @episode 4 Rose Window
// @still 14
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
// @param lead 0.6 0.1 1.5 Thickness of the lead between the panes
// @param glow 0.6 0.0 1.0 How strongly the sun stands behind the glass
// @param palette 0.0 0.0 2.0 Cobalt and ruby, autumn, or sea

constant int mirrors = 40; // reflections before we give up on a point close to the rim

// Panes by their place in a rose.
enum Pane { field, petal, eye, drop, jewel, border };

constant float3 glass[3][6] = {
    {float3(0.02, 0.07, 0.50), float3(0.78, 0.02, 0.05), float3(1.00, 0.62, 0.08),
     float3(0.02, 0.42, 0.62), float3(0.92, 0.36, 0.04), float3(0.30, 0.02, 0.34)},
    {float3(0.42, 0.05, 0.02), float3(0.98, 0.44, 0.03), float3(1.00, 0.84, 0.34),
     float3(0.80, 0.16, 0.03), float3(0.30, 0.36, 0.04), float3(0.24, 0.10, 0.02)},
    {float3(0.01, 0.16, 0.34), float3(0.03, 0.56, 0.52), float3(0.90, 0.96, 0.72),
     float3(0.10, 0.34, 0.72), float3(0.55, 0.85, 0.60), float3(0.03, 0.06, 0.26)}};

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

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Which pane of a rose a point of the triangle lies in, and how far the nearest lead is. Lengths
// are counted in `reach`, from the middle of a rose to the middle of its edge.
struct Glazing {
    int pane;
    float lead;
};

Glazing glazingAt(float2 at, float reach, thread const Mirrors& m) {
    float2 a = at / reach;
    float2 along = float2(-m.line.y, m.line.x); // the slanted mirror's direction
    float toEdge = (length(at - float2(m.centre, 0.0)) - m.radius) / reach;
    // Distances below 0 lie inside a pane; later panes lie over earlier ones.
    float shapes[6] = {
        1.0, length(float2(a.x - 0.555, abs(a.y) + 0.26)) - 0.40, // a petal: two arcs that meet
        length(a) - 0.215,
        length(a - 0.70 * along) - 0.125,
        length(a) - 0.105,
        toEdge - 0.085};
    Glazing glazing = {field, 1.0};
    for (int pane = petal; pane <= border; pane++) {
        glazing.lead = min(glazing.lead, abs(shapes[pane]));
        if (shapes[pane] < 0.0) glazing.pane = pane;
    }
    glazing.lead = min(glazing.lead, toEdge);
    if (glazing.pane == field) glazing.lead = min(glazing.lead, abs(dot(a, m.line)));
    return glazing;
}

// The wall: courses of stone, lit by what comes out of the window.
float3 wallAt(float2 z, float radius, float pixel, float3 tint) {
    float2 block = z * float2(2.6, 5.2);
    block.x += 0.5 * fract(floor(block.y) * 0.5) * 2.0;
    float2 inside = abs(fract(block) - 0.5);
    float2 width = float2(2.6, 5.2) * pixel;
    float joint = max(smoothstep(0.5 - 0.02 - width.x, 0.5 - 0.02, inside.x),
                      smoothstep(0.5 - 0.04 - width.y, 0.5 - 0.04, inside.y));
    float tone = 0.75 + 0.5 * hash(floor(block));
    float glow = exp(-2.6 * (radius - 1.0));
    return (float3(0.010, 0.010, 0.014) + tint * 0.16 * glow) * tone * (1.0 - 0.55 * joint);
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float side = min(u.resolution.x, u.resolution.y);
    float2 z = (uv - 0.5) * u.resolution / side * 2.24;
    float radius = length(z);
    float pixel = 2.24 / side;
    float t = u.time * p.drift;
    int set = clamp(int(p.palette + 0.5), 0, 2);

    // The sun wanders behind the glass.
    float2 sun = 0.5 * float2(cos(t * 0.5 + 1.0), sin(t * 0.4));
    float backlight = 0.30 + 1.7 * p.glow * exp(-1.5 * length_squared(z - sun));

    // We travel: the point `heading` comes to the middle, and the disk turns.
    Mirrors m = mirrorsOf(floor(p.petals + 0.5), 3.0);
    float scale = 1.0;
    float2 at = z * min(1.0, 0.9995 / radius);
    at = walk(at, 0.46 * float2(cos(t * 0.37), sin(t * 0.53)), scale);
    at = times(at, float2(cos(t * 0.2), sin(t * 0.2)));
    int turns = 0;
    int count = fold(at, scale, turns, m);

    float reach = m.centre - m.radius;
    float size = pixel * scale / reach; // of a pixel, counted as glazingAt counts
    Glazing glazing = glazingAt(at, reach, m);

    // Roses change their colours with the number of round mirrors on the way; panes are never quite
    // alike, as glass is blown and not poured.
    int shift = (turns & 1) != 0 && glazing.pane < eye ? 1 - glazing.pane : glazing.pane;
    float3 colour = glass[set][shift];
    colour *= 0.8 + 0.4 * hash(float2(float(count), float(glazing.pane)));
    colour *= 0.85 + 0.3 * sin(float(turns) * 2.4 + t);

    float lead = line(glazing.lead, 0.035 * p.lead, size);
    float fine = smoothstep(0.06, 0.35, size); // too fine to be seen: the average of all panes
    float3 average = 0.40 * glass[set][field] + 0.14 * glass[set][petal] + 0.05 * glass[set][eye];
    colour = mix(colour * (1.0 - 0.96 * lead), average, fine);
    colour *= backlight * 1.6;
    colour += float3(1.0, 0.80, 0.55) * 0.10 * p.glow * exp(-3.5 * length(z - sun)) * (1.0 - 0.8 * lead);

    // The stone ring, lighter where its rounded face looks at the window, then the wall.
    float3 tint = mix(average * 3.0, float3(1.0, 0.62, 0.36), 0.6) * backlight * (0.4 + p.glow);
    float ring = (radius - 1.045) / 0.045;
    float3 stone = wallAt(z, radius, pixel, tint);
    if (abs(ring) < 1.0)
        stone = tint * 0.10 * (0.25 + pow(saturate(0.5 - 0.5 * ring), 2.0)) + float3(0.006);
    stone *= 1.0 - 0.7 * line(abs(ring) - 1.0, 0.08, pixel / 0.045);
    colour = mix(stone, colour, smoothstep(1.0 + pixel, 1.0 - pixel, radius));

    colour = pow(1.0 - exp(-2.2 * colour), float3(0.70));
    return float4(colour + (hash(uv * u.resolution) - 0.5) / 255.0, 1.0);
}
