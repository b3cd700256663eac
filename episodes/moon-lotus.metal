// Moon Lotus
//
// @episode 9 Moon Lotus
// @grid 210
// @still 17
// @length 60
// @teaches Petals from one formula and a golden angle, light through thin things, and a reflection that is drawn as well
// @category Nature
// @tags flower, phyllotaxis, translucency, night, water
//
// A lotus opens and closes on a pond. Leaves and petals grow one after the other, each turned by the
// golden angle against the last, so that no two stand in one line; the older, the longer and the
// flatter. Petals are thin: the moon behind them and the glow within shine through. The pond is no
// mirror but a second flower, upside down, that the ripples shake.

// @param open 1.0 0.0 1.0 How far the flower opens
// @param speed 1.0 0.0 3.0 How fast it opens and closes
// @param moon 0.8 0.0 1.5 Light of the moon
// @param heart 0.8 0.0 1.5 Light from within
// @param ripple 0.5 0.0 1.5 How much the water moves

struct Vertex {
    float4 position [[position]];
    float3 place;  // y is up, the water at 0
    float3 normal;
    float3 toEye;
    float2 on;     // along the petal, 0 at its foot to 1; across it, -1 to 1
    float layer;   // 0 in the middle of the flower, 1 at its outer petals
    float shown;   // 1 on a surface, less between two
    float kind;    // what it is, see below
};

// Ten by ten patches of 18 cells. Around each lies a seam of points that all stand at its foot,
// so that what joins two patches has next to no area; it is not shown.
constant float cells = 210.0;
constant float patch = 21.0;
constant int petals = 56;   // the first are stamens
constant int stamens = 16;
constant int mirrored = 30; // of the petals, the outer ones; then come a seed head and eight leaves
enum Kind { petal, stamen, head, leaf, below };

float hash(float2 cell) {
    float3 q = fract(float3(cell.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

// Noise with its slope: (value, slope along x, slope along y).
float3 sloped(float2 q) {
    float2 cell = floor(q);
    float2 f = q - cell;
    float2 s = f * f * (3.0 - 2.0 * f);
    float2 e = float2(0.0, 1.0);
    float a = hash(cell), b = hash(cell + e.yx), c = hash(cell + e.xy), d = hash(cell + e.yy);
    float k = a - b - c + d;
    return float3(a + (b - a) * s.x + (c - a) * s.y + k * s.x * s.y,
                  6.0 * f * (1.0 - f) * (float2(b - a, c - a) + k * s.yx));
}

float noise(float2 q) { return sloped(q).x; }

float2 rotate(float2 v, float a) {
    float c = cos(a), s = sin(a);
    return float2(v.x * c - v.y * s, v.x * s + v.y * c);
}

float bloom(float t, constant Params& p) {
    float wave = 0.5 - 0.5 * cos(t * p.speed * 0.157 + 0.9);
    return p.open * mix(0.30, 1.0, smoothstep(0.05, 0.80, wave));
}

// A petal is bent along its length like a part of a circle, and hollow across.
float3 petalAt(float along, float across, float index, float opened, float t) {
    float layer = (index + 0.5) / float(petals);
    bool thread_ = index < float(stamens);
    float u = saturate((index - float(stamens) + 0.5) / float(petals - stamens));
    float length_ = thread_ ? 0.20 + 0.05 * hash(float2(index, 3.0)) : mix(0.52, 1.0, pow(u, 0.7)) * (0.94 + 0.12 * hash(float2(index, 1.0)));
    float width = thread_ ? 0.018 : length_ * mix(0.21, 0.27, u);
    float lean = thread_ ? 0.25 + 0.5 * hash(float2(index, 2.0)) : mix(0.16, 1.36, pow(u, 0.95)) * mix(0.22, 1.0, opened) + 0.10;
    lean += 0.02 * sin(t * 0.9 + index * 1.7) * along;
    float bend = thread_ ? -0.4 : -mix(0.95, 0.62, opened) - 0.25 * (1.0 - u);
    float first = lean - 0.45 * bend;
    float last = first + bend * along;
    float r = 0.03 + 0.10 * layer + length_ * (cos(first) - cos(last)) / bend;
    float y = 0.13 - 0.07 * layer + length_ * (sin(last) - sin(first)) / bend;
    // Widest beyond the middle, with a pointed end.
    float outline = pow(along, 0.62) * pow(max(1.0 - along, 0.0), 0.50) * 2.05 * (0.85 + 0.15 * along);
    float side = width * outline * across;
    if (thread_) side = width * across * (0.35 + 0.65 * smoothstep(0.72, 0.95, along));
    float hollow = thread_ ? 0.0 : 0.55 * side * side / max(width, 0.01) * (1.0 - 0.4 * along);
    // Hollow towards the middle of the flower: inwards and up.
    float3 q = float3(r - hollow * cos(last) * 1.0, y + hollow * sin(last), side);
    q.xz = rotate(q.xz, index * 2.39996323 + 0.4);
    return q;
}

// Leaves lie on the water, with a notch, and their edges curl up a little.
float3 leafAt(float along, float across, float index, float t) {
    const float2 centres[8] = {float2(-1.75, 0.60), float2(1.50, 1.15), float2(-1.05, 1.95), float2(2.45, 0.05),
                               float2(-2.55, -0.35), float2(0.55, 2.75), float2(1.85, -1.10), float2(-1.95, -1.45)};
    int i = int(index);
    float size = 0.46 + 0.26 * hash(float2(index, 5.0));
    float a = across * 3.02 + index * 1.9;
    float r = along * size * (1.0 - 0.16 * pow(abs(across), 24.0)) * (1.0 + 0.03 * sin(a * 5.0 + index));
    float2 q = centres[i] + float2(cos(a), sin(a)) * r;
    float y = 0.006 + 0.035 * pow(along, 8.0) * (0.6 + 0.4 * sin(a * 3.0 + index)) + 0.010 * sin(t * 0.7 + q.x * 2.0 + q.y);
    return float3(q.x, y, q.y);
}

float3 headAt(float along, float across) {
    float a = across * 3.14159265;
    float r = along < 0.7 ? 0.105 * along / 0.7 : mix(0.105, 0.035, (along - 0.7) / 0.3);
    float y = along < 0.7 ? 0.235 - 0.012 * along * along : mix(0.229, 0.09, (along - 0.7) / 0.3);
    return float3(cos(a) * r, y, sin(a) * r);
}

float3 surface(int kind, float along, float across, float index, float opened, float t) {
    if (kind == leaf) return leafAt(along, across, index, t);
    if (kind == head) return headAt(along, across);
    return petalAt(along, across, index, opened, t);
}

// The camera goes slowly to and fro in front of the flower, a little above the water.
struct Camera {
    float3 eye;
    float3x3 to; // right, up, forward
};

Camera cameraAt(float t) {
    float a = -1.35 + 0.35 * sin(t * 0.083);
    Camera c;
    c.eye = float3(3.05 * cos(a), 1.06 + 0.14 * sin(t * 0.11), 3.05 * sin(a));
    float3 forward = normalize(float3(0.0, 0.44, 0.0) - c.eye);
    float3 right = normalize(cross(float3(0.0, 1.0, 0.0), forward));
    c.to = float3x3(right, cross(forward, right), forward);
    return c;
}

float2 focus(float2 resolution) { return 1.30 * min(resolution.x, resolution.y) / resolution * 2.0; }

constant float3 moonAt = float3(-0.62, 0.42, 0.66); // direction, about of length 1

Vertex corner(float2 grid, constant Uniforms& u, constant Params& p) {
    float row = round(grid.y * cells), column = round(grid.x * cells);
    float py = min(floor(row / patch), 9.0), px = min(floor(column / patch), 9.0);
    float number = py * 10.0 + px;
    float2 in = float2(column - px * patch, row - py * patch) - 1.0;
    bool seam = any(in < 0.0) || any(in > 18.0);
    float along = seam ? 0.0 : in.y / 18.0;
    along = clamp(0.5 - 0.5 * cos(3.14159265 * along), 0.004, 1.0); // closer at the ends, which are round
    float across = seam ? 0.0 : in.x / 9.0 - 1.0;
    float t = u.time;
    bool under = number >= float(petals) && number < float(petals + mirrored);
    float index = under ? number - float(mirrored) : number; // the last ones are the outer ones
    int kind = index < float(stamens) ? stamen : petal;
    if (number >= float(petals + mirrored)) {
        index = number - float(petals + mirrored) - 1.0;
        kind = index < 0.0 ? head : leaf;
    }
    float opened = bloom(t, p);
    const float h = 0.012;
    Vertex v;
    v.place = surface(kind, along, across, index, opened, t);
    float a = clamp(along, 0.02, 0.98);
    float3 here = surface(kind, a, across, index, opened, t);
    float3 ds = surface(kind, a + h, across, index, opened, t) - here;
    float3 dc = surface(kind, a, across + h, index, opened, t) - here;
    v.normal = normalize(cross(ds, dc) + 1e-9);
    v.on = float2(along, across);
    v.layer = saturate((index - float(stamens)) / float(petals - stamens));
    v.shown = seam ? 0.0 : 1.0;
    v.kind = float(under ? below : kind);
    if (under) {
        // Flat waves shake what they mirror: sideways a little, up and down a lot.
        float3 q = v.place;
        float wave = sin(q.y * 23.0 - t * 1.9 + q.x * 4.0) + 0.6 * sin(q.y * 41.0 + t * 2.7 - q.z * 6.0);
        q.xz += p.ripple * 0.020 * wave * smoothstep(0.0, 0.3, q.y);
        v.place = float3(q.x, -q.y, q.z);
        v.normal.y = -v.normal.y;
    }
    Camera camera = cameraAt(t);
    v.toEye = camera.eye - v.place;
    float3 view = transpose(camera.to) * -v.toEye;
    v.position = float4(view.xy * focus(u.resolution), view.z - 0.3, view.z);
    return v;
}

float3 finish(float3 colour, float2 pixel, constant Uniforms& u) {
    colour = 1.0 - exp(-1.8 * colour);
    colour = sqrt(colour * sqrt(colour)); // to the power of 3/4
    float2 uv = pixel / u.resolution - 0.5;
    colour *= 1.0 - 0.8 * dot(uv, uv);
    return colour + (hash(pixel) - 0.5) / 255.0;
}

// The pond and what stands around it, as far as one sees it at night.
float3 nightLight(float3 d, float t, constant Params& p) {
    float3 m = normalize(moonAt);
    float near = max(dot(d, m), 0.0);
    float up = max(d.y, 0.0);
    float3 colour = mix(float3(0.050, 0.105, 0.150), float3(0.010, 0.020, 0.055), smoothstep(0.0, 0.7, up));
    colour += p.moon * float3(0.30, 0.42, 0.55) * (0.10 * pow(near, 6.0) + 0.30 * pow(near, 60.0));
    if (d.y > 0.42) return colour;
    float a = atan2(d.x, d.z);
    float wood = 0.05 + 0.10 * noise(float2(a * 5.0, 1.0)) + 0.07 * noise(float2(a * 14.0, 2.0));
    float3 mist = float3(0.022, 0.050, 0.062) * exp(-up * 16.0);
    return mix(colour, float3(0.003, 0.009, 0.012) + mist, smoothstep(0.05, -0.05, d.y - wood));
}

float3 moonlit(float3 albedo, float3 n, float3 view, float through, float3 m) {
    float facing = dot(n, m);
    float shine = saturate(dot(n, normalize(m + view)));
    shine *= shine; // to the power of 16, and squared below
    shine *= shine;
    shine *= shine;
    shine *= shine;
    float3 cool = float3(0.55, 0.74, 1.0);
    float3 gone = albedo * albedo * float3(1.05, 0.8, 0.95);
    return cool * (albedo * saturate(facing * 0.85 + 0.15) + gone * through * saturate(-facing * 0.8 + 0.25)) +
           cool * (0.35 * shine * shine);
}

float4 shade(Vertex v, constant Uniforms& u, constant Params& p) {
    if (v.shown < 0.999) discard_fragment();
    float t = u.time;
    bool under = v.kind > 3.5;
    bool isLeaf = abs(v.kind - float(leaf)) < 0.5;
    bool isHead = abs(v.kind - float(head)) < 0.5;
    bool isThread = abs(v.kind - float(stamen)) < 0.5;
    float3 place = under ? float3(v.place.x, -v.place.y, v.place.z) : v.place;
    float3 n = under ? float3(v.normal.x, -v.normal.y, v.normal.z) : v.normal;
    n = normalize(n);
    float3 toEye = normalize(v.toEye);
    float3 view = under ? float3(toEye.x, -toEye.y, toEye.z) : toEye;
    if (dot(n, view) < 0.0) n = -n;
    float3 m = normalize(moonAt);

    float3 albedo;
    float through = 1.0, shadow = 1.0;
    float s = v.on.x, c = v.on.y;
    if (isLeaf) {
        float vein = smoothstep(0.10, 0.0, abs(fract(c * 9.0) - 0.5)) * smoothstep(0.05, 0.3, s);
        albedo = mix(float3(0.030, 0.085, 0.050), float3(0.055, 0.13, 0.072), 0.6 * vein + 0.3);
        albedo = mix(albedo, float3(0.16, 0.07, 0.06), smoothstep(0.90, 1.0, s) * 0.7);
        through = 0.2;
        shadow = smoothstep(0.35, 1.15, length(place.xz)) * 0.8 + 0.2;
    } else if (isHead) {
        float2 hole = fract(float2(s * 4.2, c * 4.0)) - 0.5;
        albedo = float3(0.62, 0.58, 0.16) * (0.5 + 0.5 * smoothstep(0.20, 0.30, length(hole)));
    } else if (isThread) {
        albedo = mix(float3(0.85, 0.62, 0.20), float3(1.0, 0.78, 0.26), smoothstep(0.7, 0.9, s));
    } else {
        float vein = 0.5 + 0.5 * sin(c * 34.0 + 1.5 * sin(c * 7.0 + s * 3.0 + v.layer * 40.0));
        albedo = mix(float3(1.0, 0.90, 0.78), float3(0.98, 0.66, 0.76), smoothstep(0.02, 0.55, s));
        albedo = mix(albedo, float3(0.86, 0.20, 0.44), smoothstep(0.42, 1.05, s + 0.16 * abs(c)) * 0.95);
        albedo *= 0.90 + 0.10 * vein;
        shadow = mix(0.30, 1.0, smoothstep(0.05, 0.65, s)) * mix(0.75, 1.0, v.layer);
    }
    float3 colour = p.moon * 1.15 * shadow * moonlit(albedo, n, view, through, m);
    colour += albedo * float3(0.035, 0.055, 0.095) * (0.6 + 0.4 * n.y) * shadow;
    // The glow hangs over the seed head; petals pass it on.
    float3 way = float3(0.0, 0.34, 0.0) - place;
    float square = dot(way, way);
    float facing = dot(n, way * rsqrt(square));
    float3 warm = float3(1.0, 0.55, 0.22) * p.heart * (0.9 + 0.1 * sin(t * 1.1));
    float glow = (0.30 * saturate(facing * 0.7 + 0.3) + (isLeaf ? 0.0 : 0.22 * saturate(-facing * 0.6 + 0.4))) / (0.10 + square);
    colour += albedo * warm * glow * (isThread || isHead ? 1.4 : 1.0);
    if (isLeaf) {
        // Water stands on the leaves in drops.
        float2 cell = floor(v.place.xz * 16.0);
        float own = hash(cell);
        float2 away = fract(v.place.xz * 16.0) - 0.3 - 0.4 * fract(own * float2(91.0, 353.0));
        float drop = step(0.72, own) * smoothstep(0.16, 0.08, length(away + float2(0.05, -0.05)));
        colour += drop * p.moon * float3(0.35, 0.5, 0.65) * smoothstep(0.10, 0.02, length(away));
    }
    if (under) {
        // What the water mirrors is dimmer, more so where one looks down on it, and takes its colour.
        float flat_ = 1.0 - saturate(toEye.y);
        float mirror = 0.16 + 0.70 * flat_ * flat_ * flat_;
        colour = colour * mirror * float3(0.72, 0.86, 0.95) + float3(0.002, 0.007, 0.010);
        colour *= smoothstep(1.15, 0.1, place.y) * 0.95 + 0.05;
    }
    return float4(finish(colour, v.position.xy, u), 1.0);
}

float4 background(float2 uv, constant Uniforms& u, constant Params& p) {
    float t = u.time;
    Camera camera = cameraAt(t);
    float3 d = normalize(camera.to * float3((uv * 2.0 - 1.0) / focus(u.resolution), 1.0));
    float2 pixel = float2(uv.x, 1.0 - uv.y) * u.resolution;
    bool water = d.y < -0.004;
    float away = camera.eye.y / max(-d.y, 0.004);
    float2 at = camera.eye.xz + d.xz * away;
    float ring = length(at);
    float3 look = d;
    float mirror = 1.0;
    if (water) {
        // Ripples: the wind's, and rings around the flower.
        float fine = p.ripple / (1.0 + away * 0.10);
        float2 slope = fine * (0.022 * sloped(at * 4.0 + t * float2(0.4, -0.3)).yz + 0.014 * sloped(at * 11.0 - t * float2(0.8, 0.9)).yz);
        slope += at / max(ring, 0.05) * p.ripple * 0.012 * sin(ring * 16.0 - t * 2.2) * exp(-ring * 0.55) * smoothstep(0.4, 0.8, ring);
        float3 n = normalize(float3(slope.x, 1.0, slope.y));
        look = reflect(d, n);
        // Far away the water is as bright as the bank behind it.
        look.y = mix(abs(look.y), 0.02, smoothstep(8.0, 40.0, away) * 0.8);
        float flat_ = 1.0 - saturate(-dot(d, n));
        mirror = 0.38 + 0.62 * flat_ * flat_ * flat_ * flat_;
    }
    float3 colour = nightLight(look, t, p) * mirror;
    if (water) {
        float glint = pow(max(dot(look, normalize(moonAt)), 0.0), 420.0);
        colour += p.moon * float3(0.75, 0.88, 1.0) * glint * 2.2;
        colour += float3(1.0, 0.42, 0.30) * p.heart * 0.055 * exp(-2.3 * ring) + float3(0.002, 0.006, 0.009);
    }
    // Fireflies out of focus, near the far bank.
    float a = atan2(d.x, d.z);
    int flies = abs(d.y - 0.06) < 0.12 ? 14 : 0;
    for (int i = 0; i < flies; i++) {
        float k = float(i);
        float2 fly = float2(-1.1 + 0.13 * k + 0.06 * sin(t * 0.23 + k * 2.1), 0.012 + 0.09 * hash(float2(k, 8.0)) + 0.012 * sin(t * 0.4 + k * 4.0));
        float2 from = float2(a - fly.x, d.y - fly.y);
        float size = 0.003 + 0.009 * hash(float2(k, 2.0));
        float light = max(sin(t * (0.5 + 0.3 * hash(float2(k, 4.0))) + k * 2.6), 0.0);
        colour += float3(0.75, 0.85, 0.25) * light * 0.7 * smoothstep(size, size * 0.6, length(from));
    }
    return float4(finish(colour, pixel, u), 1.0);
}
