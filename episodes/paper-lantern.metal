// Paper Lantern
//
// @episode 2 Paper Lantern
// @still 8
// @length 60
// @teaches Ray marching: distance functions, soft shadows from a lamp inside a pierced shell, shafts of light
// @category Space
// @tags ray marching, soft shadows, light
//
// A pierced lantern hangs in a ring of columns. Everything is a distance function: a function that
// says how far away the nearest surface is. A ray may safely walk that far, ask again, and so on
// until it arrives. Shadows ask the same question on the way to the lamp.

// @param turn 0.25 -1.0 1.0 How fast the lantern turns
// @param orbit 0.08 -0.5 0.5 How fast the camera circles
// @param holes 8.5 4.0 14.0 How finely the shell is pierced
// @param haze 0.55 0.0 1.0 How much light hangs in the air
// @param softness 0.5 0.0 1.0 How soft the shadows are
// @param rays 2 1 4 Rays for each pixel: more are smoother and slower

constant float3 lamp = float3(0.0, 1.55, 0.0);
constant float shellRadius = 0.72;
constant int columns = 11;
constant float ring = 4.3; // radius of the circle on which they stand
constant float far = 16.0;

// What a ray or a shadow may run into.
enum Material { nothing, ground, column, shell, flame };

struct Hit {
    float distance;
    Material material;
};

// All that the functions below need to know about this frame.
struct Scene {
    float2 spin; // cosine and sine of the lantern's angle
    float holes;
    float k;     // hardness of the shadows
};

float2 rotate(float2 v, float2 spin) {
    return float2(v.x * spin.x - v.y * spin.y, v.x * spin.y + v.y * spin.x);
}

// How open the shell is in a direction: above 0 there is paper, below 0 a hole. A gyroid, which is
// three products of sine and cosine, seen on the sphere.
float paper(float3 direction, thread const Scene& scene) {
    float3 d = direction;
    d.xz = rotate(d.xz, scene.spin);
    float3 g = d * scene.holes;
    float gyroid = dot(sin(g), cos(g.zxy));
    return abs(gyroid) - 0.46;
}

float lanternDistance(float3 q, thread const Scene& scene) {
    float r = length(q);
    float skin = abs(r - shellRadius) - 0.022;
    // The pattern is measured in radians of the gyroid; divide by its steepest slope to make it a
    // distance that a ray can trust.
    float holes = -paper(q / max(r, 0.001), scene) * shellRadius / (scene.holes * 1.6);
    float rims = abs(q.y) - shellRadius * 0.95; // the caps close both poles
    float paper_ = max(max(skin, holes), rims);
    // The cord that it hangs from, and a knob below.
    float cord = max(length(q.xz) - 0.012, -q.y);
    float knob = length(q + float3(0.0, shellRadius + 0.10, 0.0)) - 0.05;
    float2 cap = float2(length(q.xz) - 0.27, abs(abs(q.y) - shellRadius * 0.95) - 0.015);
    return min(min(paper_, max(cap.x, cap.y)), min(cord, knob));
}

// One column stands for all nine: fold the plane into a wedge around the middle.
float columnDistance(float3 q) {
    float wedge = 6.2831853 / float(columns);
    float angle = atan2(q.z, q.x);
    float a = (fract(angle / wedge) - 0.5) * wedge;
    float r = length(q.xz);
    float2 at = float2(r * cos(a) - ring, r * sin(a));
    float flute = 0.022 * cos(14.0 * atan2(at.y, at.x));
    float shaft = length(at) - 0.34 + flute + 0.03 * cos(q.y * 0.9);
    float2 plinth = abs(at) - 0.44;
    float base = max(max(plinth.x, plinth.y), q.y - 0.24) - 0.03;
    return min(shaft * 0.8, base);
}

// The nearest of all surfaces, and which it is.
void nearer(thread Hit& best, float distance, Material material) {
    if (distance < best.distance) {
        best.distance = distance;
        best.material = material;
    }
}

Hit nearest(float3 q, thread const Scene& scene) {
    Hit best = {far, nothing};
    nearer(best, q.y, ground);
    nearer(best, columnDistance(q), column);
    nearer(best, lanternDistance(q - lamp, scene), shell);
    nearer(best, length((q - lamp) * float3(1.0, 0.8, 1.0)) - 0.10, flame);
    return best;
}

// Walks along a ray until it touches something.
Hit march(float3 origin, float3 direction, thread const Scene& scene) {
    float t = 0.02;
    for (int i = 0; i < 110; i++) {
        Hit hit = nearest(origin + direction * t, scene);
        if (hit.distance < 0.0006 * t) {
            hit.distance = t;
            return hit;
        }
        t += hit.distance;
        if (t > far) break;
    }
    return Hit{far, nothing};
}

// The surface faces where the distance grows fastest: four samples at a tetrahedron's corners.
float3 normalAt(float3 q, thread const Scene& scene) {
    const float2 e = float2(1.0, -1.0);
    const float h = 0.0012;
    return normalize(e.xyy * nearest(q + e.xyy * h, scene).distance +
                     e.yyx * nearest(q + e.yyx * h, scene).distance +
                     e.yxy * nearest(q + e.yxy * h, scene).distance +
                     e.xxx * nearest(q + e.xxx * h, scene).distance);
}

// Light of the lamp that arrives at q. A ray that passes close to a surface is partly in its
// shadow, the more so the closer it comes: that gives the soft edge for free.
float lampLight(float3 q, thread const Scene& scene) {
    float3 way = lamp - q;
    float length_ = length(way);
    float3 direction = way / length_;
    float light = 1.0;
    float t = 0.03;
    // Columns on the way; the march ends before the shell.
    for (int i = 0; i < 28 && t < length_ - shellRadius; i++) {
        float d = columnDistance(q + direction * t);
        light = min(light, scene.k * d / t);
        if (light < 0.01) return 0.0;
        t += clamp(d, 0.04, 0.6);
    }
    // Seen from its own centre the shell is only a question of direction.
    float width = 0.06 + 3.0 / scene.k * max(length_ - shellRadius, 0.0) * 0.3;
    float open = smoothstep(width, -width, paper(-direction, scene));
    float cap = smoothstep(0.96, 0.92, abs(direction.y));
    return saturate(light) * (length_ < shellRadius ? 1.0 : open * cap);
}

// Light scattered towards us by the air along a ray: a few samples, each asking the shell.
float shafts(float3 origin, float3 direction, float end, float jitter, thread const Scene& scene) {
    const int samples = 20;
    // Spread the samples evenly in angle around the lamp, where the light is.
    float3 toLamp = lamp - origin;
    float closest = dot(toLamp, direction);
    float d = length(toLamp - direction * closest);
    d = max(d, 0.03);
    float a = atan((0.0 - closest) / d), b = atan((end - closest) / d);
    float sum = 0.0;
    for (int i = 0; i < samples; i++) {
        float angle = mix(a, b, (float(i) + jitter) / float(samples));
        float3 q = origin + direction * (closest + d * tan(angle)) - lamp;
        float r = length(q);
        float open = smoothstep(0.22, -0.22, paper(q / r, scene));
        sum += r < shellRadius ? 0.6 : open;
    }
    return sum * (b - a) / (d * float(samples));
}

float3 background(float3 direction) {
    return mix(float3(0.004, 0.007, 0.016), float3(0.012, 0.020, 0.050), saturate(direction.y));
}

float3 colourAt(float3 q, float3 direction, Material material, thread const Scene& scene) {
    const float3 flameColour = float3(1.0, 0.56, 0.22);
    float3 n = normalAt(q, scene);
    float3 toLamp = lamp - q;
    float square = dot(toLamp, toLamp);
    float facing = max(dot(n, toLamp * rsqrt(square)), 0.0);
    float light = 0.0;
    float3 albedo = float3(0.0);
    switch (material) {
        case flame: return float3(3.2, 2.2, 1.1);
        case shell:
            // Paper glows from behind: what falls on its inside comes through.
            albedo = float3(1.0, 0.42, 0.16);
            light = 0.16 + 0.20 * pow(1.0 - saturate(dot(n, -direction)), 2.0) + 2.6 * facing;
            return albedo * light * (0.75 + 0.25 * sin(90.0 * q.y)) * flameColour;
        case ground: {
            // Flagstones: the joints of a square grid, every second row shifted.
            float2 tile = q.xz * 0.9;
            tile.x += 0.5 * floor(fract(tile.y * 0.5) * 2.0);
            float2 edge = abs(fract(tile) - 0.5);
            float joint = smoothstep(0.5, 0.47, max(edge.x, edge.y));
            albedo = float3(0.52, 0.46, 0.42) * (0.35 + 0.65 * joint);
            break;
        }
        case column: albedo = float3(0.62, 0.55, 0.50); break;
        default: return background(direction);
    }
    light = facing * lampLight(q + n * 0.01, scene) * 15.0 / (0.8 + square);
    float sky = 0.5 + 0.5 * n.y;
    // Paper lets a little of the lamp through everywhere, and the night adds its blue.
    light += 0.40 * facing / (0.8 + square);
    return albedo * (flameColour * light + float3(0.006, 0.010, 0.024) * sky);
}

// Where in a pixel its rays pass: four places of which no two share a row or a column.
constant float2 places[4] = {float2(-0.125, -0.375), float2(0.125, 0.375), float2(0.375, -0.125),
                             float2(-0.375, 0.125)};

// The light that comes along one ray, with the air's share.
float3 lightAlong(float3 origin, float3 direction, float jitter, float haze, thread const Scene& scene) {
    Hit hit = march(origin, direction, scene);
    float3 colour = background(direction);
    if (hit.material != nothing) {
        colour = colourAt(origin + direction * hit.distance, direction, hit.material, scene);
        colour = mix(background(direction), colour, exp(-0.004 * hit.distance * hit.distance));
    }
    float air = shafts(origin, direction, min(hit.distance, far), jitter, scene);
    colour += float3(1.0, 0.50, 0.18) * air * 0.085 * haze;
    return colour / (1.0 + 0.55 * colour); // no ray is brighter than white, so that edges blend
}

float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float side = min(u.resolution.x, u.resolution.y);
    float2 pixel = uv * u.resolution;
    float turn = u.time * p.turn;
    Scene scene = {float2(cos(turn), sin(turn)), p.holes, mix(30.0, 5.0, p.softness)};

    // A camera on a circle inside the ring of columns, looking at the lantern. Its matrix has the
    // right, up and forward directions as columns.
    float around = u.time * p.orbit + 0.35;
    float3 origin = float3(3.5 * cos(around), 1.35 + 0.3 * sin(u.time * 0.13), 3.5 * sin(around));
    float3 forward = normalize(float3(0.0, 1.25, 0.0) - origin);
    float3 right = normalize(cross(forward, float3(0.0, 1.0, 0.0)));
    float3x3 camera = float3x3(right, cross(right, forward), forward);

    // Interleaved noise shifts each pixel's samples of the shafts, and hides the steps of 8 bits.
    float noise = fract(52.9829189 * fract(dot(pixel, float2(0.06711056, 0.00583715))));
    int rays = clamp(int(p.rays), 1, 4);
    float3 sum = float3(0.0);
    for (int i = 0; i < rays; i++) {
        float2 q = (pixel + (rays > 1 ? places[i] : float2(0.0)) - 0.5 * u.resolution) / side;
        float3 direction = camera * normalize(float3(q, 0.95));
        sum += lightAlong(origin, direction, noise, p.haze, scene);
    }
    float3 colour = pow(max(sum / float(rays), 0.0), float3(0.4545));
    return float4(colour + (noise - 0.5) / 255.0, 1.0);
}
